#include "database/SqlScanner.h"

#include <algorithm>
#include <array>

#include "base/Text.h"

namespace zent {
namespace {

constexpr std::size_t kNowhere = std::string_view::npos;

bool IsBlankOrBreak(char character) {
  return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

bool IsWordCharacter(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= 'a' && byte <= 'z') || byte == '_' || byte == '$' || byte >= 0x80;
}

template <std::size_t size>
bool IsOneOf(const std::array<std::string_view, size>& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

/// Behind these words the text is no longer what LIKE compares with.
constexpr std::array<std::string_view, 12> kPatternEnds = {"and",   "or",     "not",    "where",
                                                           "order", "group",  "having", "union",
                                                           "from",  "select", "then",   "else"};
/// A "*" behind these stands for columns.
constexpr std::array<std::string_view, 5> kColumnWords = {"select", "distinct", "distinctrow",
                                                          "all", "percent"};

class StarFinder {
 public:
  explicit StarFinder(std::string_view statement) : text_(statement) {}

  std::vector<SqlStar> Find() {
    while (at_ < text_.size()) Step();
    return std::move(stars_);
  }

 private:
  void Step() {
    const char character = text_[at_];
    if (IsBlankOrBreak(character)) {
      ++at_;
    } else if (character == '\'' || character == '"') {
      SkipQuoted(character);
    } else if (character == '[') {
      const std::size_t end = std::min(text_.find(']', at_), text_.size() - 1);
      Take(end + 1);
    } else if (IsWordCharacter(character)) {
      std::size_t end = at_;
      while (end < text_.size() && IsWordCharacter(text_[end])) ++end;
      TakeWord(end);
    } else {
      TakeSign(character);
    }
  }

  /// To the closing quote; a doubled one is part of the text.
  void SkipQuoted(char quote) {
    const std::size_t start = at_;
    for (++at_; at_ < text_.size() && text_[at_] != quote; ++at_) {
      if (text_[at_] == '*') stars_.push_back({.at = at_, .pattern = pattern_depth_ != kNowhere});
    }
    const std::size_t end = std::min(at_ + 1, text_.size());
    at_ = start;
    Take(end);
  }

  void TakeWord(std::size_t end) {
    const std::string word = ToLower(text_.substr(at_, end - at_));
    if (word == "like" || word == "alike") {
      pattern_depth_ = depth_;
    } else if (IsOneOf(kPatternEnds, word)) {
      pattern_depth_ = kNowhere;
    }
    Take(end);
  }

  void TakeSign(char sign) {
    if (sign == '*') stars_.push_back({.at = at_, .column_list = IsColumnList()});
    if (sign == '(') ++depth_;
    if (sign == ')' && depth_ > 0) --depth_;
    if (pattern_depth_ != kNowhere &&
        (depth_ < pattern_depth_ || (depth_ == pattern_depth_ && (sign == ',' || sign == ';')))) {
      pattern_depth_ = kNowhere;
    }
    Take(at_ + 1);
  }

  /// Makes the text up to `end` the last token.
  void Take(std::size_t end) {
    before_last_ = last_;
    last_ = text_.substr(at_, end - at_);
    at_ = end;
  }

  bool IsColumnList() const {
    const std::string last = ToLower(last_);
    if (last == "." || IsOneOf(kColumnWords, last)) return true;
    if (EqualsIgnoringCase(before_last_, "top")) return true;  // and its row count
    const std::string_view rest = Rest();
    if (last == "(") return EqualsIgnoringCase(before_last_, "count") && rest.starts_with(')');
    if (last != ",") return false;
    return rest.starts_with(',') || EqualsIgnoringCase(rest.substr(0, 4), "from");
  }

  /// What follows the present sign, without the blanks before it.
  std::string_view Rest() const {
    std::size_t next = at_ + 1;
    while (next < text_.size() && IsBlankOrBreak(text_[next])) ++next;
    return text_.substr(next);
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t depth_ = 0;
  std::size_t pattern_depth_ = kNowhere;  ///< of the parentheses around LIKE, while in its pattern
  std::string_view last_;
  std::string_view before_last_;
  std::vector<SqlStar> stars_;
};

}  // namespace

bool IsNameByte(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= 'a' && byte <= 'z') || byte == '_' || byte >= 0x80;
}

/// For each "(" the position of the ")" that closes it, npos elsewhere and where nothing does.
std::vector<std::size_t> ClosingParentheses(std::string_view statement) {
  std::vector<std::size_t> closing(statement.size(), std::string_view::npos);
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < statement.size(); ++i) {
    if (statement[i] == '(') open.push_back(i);
    if (statement[i] != ')' || open.empty()) continue;
    closing[open.back()] = i;
    open.pop_back();
  }
  return closing;
}

std::vector<SqlStar> FindStars(std::string_view statement) { return StarFinder(statement).Find(); }

}  // namespace zent
