#include "jet/sql/syntax/Tokenizer.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "base/Text.h"
#include "jet/sql/syntax/DateLiteral.h"
#include "jet/sql/syntax/SyntaxError.h"

namespace zent::jet {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
// Every letter outside ASCII may start a name, and all bytes of its UTF-8 form are of this kind.
bool StartsWord(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}
bool ContinuesWord(char c) { return StartsWord(c) || IsDigit(c) || c == '$'; }

Value WholeNumber(std::uint64_t number) {
  if (number <= std::numeric_limits<std::int16_t>::max()) return static_cast<std::int16_t>(number);
  if (number <= std::numeric_limits<std::int32_t>::max()) return static_cast<std::int32_t>(number);
  return static_cast<double>(number);
}

class Reader {
 public:
  explicit Reader(std::string_view statement) : statement_(statement) {}

  Result<std::vector<Token>> Read() {
    std::vector<Token> tokens;
    for (SkipBlanks(); at_ < statement_.size(); SkipBlanks()) {
      start_ = at_;
      Result<Token> token = Next();
      if (!token.ok()) return token.error();
      token.value().at = start_;
      tokens.push_back(std::move(token.value()));
    }
    tokens.push_back({.kind = TokenKind::End, .at = statement_.size()});
    return tokens;
  }

 private:
  void SkipBlanks() {
    while (at_ < statement_.size() && IsBlank(statement_[at_])) ++at_;
  }
  char Peek(std::size_t ahead = 0) const {
    return at_ + ahead < statement_.size() ? statement_[at_ + ahead] : '\0';
  }
  std::string_view Taken() const { return statement_.substr(start_, at_ - start_); }
  RuntimeError Error(std::string_view reason) const {
    return SyntaxError(statement_, start_, reason);
  }

  Result<Token> Next() {
    const char c = Peek();
    if (StartsWord(c)) return Word();
    if (c == '[') return Name(']');
    if (c == '`') return Name('`');
    if (c == '"' || c == '\'') return Quoted(c);
    if (c == '#') return DateBetweenMarks();
    if (c == '&' && (Peek(1) == 'H' || Peek(1) == 'h')) return Hexadecimal();
    if (IsDigit(c) || (c == '.' && IsDigit(Peek(1)))) return Number();
    return Mark();
  }

  Result<Token> Word() {
    while (ContinuesWord(Peek())) ++at_;
    return Token{.kind = TokenKind::Word, .text = std::string(Taken())};
  }

  Result<Token> Name(char end) {
    const std::size_t close = statement_.find(end, start_ + 1);
    if (close == std::string_view::npos) return Error("the name does not end");
    at_ = close + 1;
    std::string name(statement_.substr(start_ + 1, close - start_ - 1));
    if (TrimBlanks(name).empty()) return Error("the name is empty");
    return Token{.kind = TokenKind::Name, .text = std::move(name)};
  }

  Result<Token> Quoted(char quote) {
    std::string text;
    for (++at_; at_ < statement_.size(); ++at_) {
      if (Peek() == quote) {
        if (Peek(1) != quote) {
          ++at_;
          return Token{.kind = TokenKind::Literal, .value = std::move(text)};
        }
        ++at_;  // doubled: stands for itself
      }
      text.push_back(Peek());
    }
    return Error("the text does not end");
  }

  Result<Token> DateBetweenMarks() {
    const std::size_t close = statement_.find('#', start_ + 1);
    if (close == std::string_view::npos) return Error("the date does not end");
    at_ = close + 1;
    const std::optional<Date> date =
        ParseDateText(statement_.substr(start_ + 1, close - start_ - 1));
    if (!date) return Error("this is no date");
    return Token{.kind = TokenKind::Literal, .value = *date};
  }

  Result<Token> Hexadecimal() {
    std::uint32_t number = 0;
    const char* const first = statement_.data() + start_ + 2;
    const auto [end, problem] =
        std::from_chars(first, statement_.data() + statement_.size(), number, 16);
    at_ = static_cast<std::size_t>(end - statement_.data());
    if (problem != std::errc() || ContinuesWord(Peek())) return Error("this is no number");
    Value value = static_cast<std::int32_t>(number);
    if (number <= std::numeric_limits<std::uint16_t>::max()) {
      value = static_cast<std::int16_t>(number);
    }
    return Token{.kind = TokenKind::Literal, .value = std::move(value)};
  }

  Result<Token> Number() {
    while (IsDigit(Peek())) ++at_;
    bool whole = Peek() != '.';
    if (!whole) ++at_;
    while (IsDigit(Peek())) ++at_;
    if (Peek() == 'e' || Peek() == 'E') {
      whole = false;
      ++at_;
      if (Peek() == '+' || Peek() == '-') ++at_;
      if (!IsDigit(Peek())) return Error("this is no number");
      while (IsDigit(Peek())) ++at_;
    }
    if (ContinuesWord(Peek())) return Error("this is no number");
    return NumberOf(Taken(), whole);
  }

  Result<Token> NumberOf(std::string_view text, bool whole) const {
    const char* const end = text.data() + text.size();
    std::uint64_t integer = 0;
    if (whole && std::from_chars(text.data(), end, integer).ec == std::errc()) {
      return Token{.kind = TokenKind::Literal, .value = WholeNumber(integer)};
    }
    double number = 0;
    if (std::from_chars(text.data(), end, number).ec != std::errc()) {
      return Error("the number is too large or too small");
    }
    return Token{.kind = TokenKind::Literal, .value = number};
  }

  Result<Token> Mark() {
    constexpr std::string_view kPairs[] = {"<>", "<=", ">="};
    for (const std::string_view pair : kPairs) {
      if (statement_.substr(at_, 2) != pair) continue;
      at_ += 2;
      return Token{.kind = TokenKind::Mark, .text = std::string(pair)};
    }
    constexpr std::string_view kMarks = "=<>+-*/\\^&(),.!;?";
    if (kMarks.find(Peek()) == std::string_view::npos) return Error("unexpected character");
    ++at_;
    return Token{.kind = TokenKind::Mark, .text = std::string(Taken())};
  }

  std::string_view statement_;
  std::size_t start_ = 0;
  std::size_t at_ = 0;
};

}  // namespace

bool Token::Is(TokenKind wanted, std::string_view wanted_text) const {
  return kind == wanted && EqualsIgnoringCase(text, wanted_text);
}

Result<std::vector<Token>> Tokenize(std::string_view statement) { return Reader(statement).Read(); }

}  // namespace zent::jet
