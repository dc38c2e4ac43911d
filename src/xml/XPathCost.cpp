#include "xml/XPathCost.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

namespace zent::xml {
namespace {

using Token = std::string_view;

bool IsOneOf(Token token, std::initializer_list<Token> choices) {
  return std::find(choices.begin(), choices.end(), token) != choices.end();
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool BeginsName(Token token) {
  const char c = token.empty() ? '\0' : token.front();
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool GoesOnWithName(char c) { return BeginsName({&c, 1}) || IsDigit(c) || c == '-' || c == '.'; }

bool IsLiteral(Token token) {
  return !token.empty() &&
         (token.front() == '"' || token.front() == '\'' || IsDigit(token.front()));
}

/// Length of the token that `rest` begins with.
std::size_t TokenLength(std::string_view rest) {
  if (rest.front() == '"' || rest.front() == '\'') {
    const std::size_t end = rest.find(rest.front(), 1);
    return end == std::string_view::npos ? rest.size() : end + 1;
  }
  if (BeginsName(rest) || IsDigit(rest.front())) {
    const auto* const end = std::find_if_not(rest.begin(), rest.end(), GoesOnWithName);
    return static_cast<std::size_t>(end - rest.begin());
  }
  return IsOneOf(rest.substr(0, 2), {"//", "..", "::", "!=", "<=", ">="}) ? 2 : 1;
}

/// The tokens of an expression; each is a view into it.
std::vector<Token> TokensOf(std::string_view xpath) {
  std::vector<Token> tokens;
  while (!xpath.empty()) {
    const std::size_t length = TokenLength(xpath);
    if (!IsOneOf(xpath.substr(0, 1), {" ", "\t", "\r", "\n"})) {
      tokens.push_back(xpath.substr(0, length));
    }
    xpath.remove_prefix(length);
  }
  return tokens;
}

/// Goes along the tokens, and knows where it is.
class TokenWalk {
 public:
  explicit TokenWalk(std::string_view xpath) : tokens_(TokensOf(xpath)) {}

  bool AtEnd() const { return at_ == tokens_.size(); }
  Token Now() const { return Ahead(0); }
  Token Ahead(std::size_t by) const { return at_ + by < tokens_.size() ? tokens_[at_ + by] : ""; }
  Token Back(std::size_t by) const { return by <= at_ ? tokens_[at_ - by] : ""; }
  bool IsInBrackets() const { return depth_ > 0; }
  /// True when what stands here goes on with what stands before: as an operator or within a path.
  bool IsBehindOperand() const { return behind_operand_; }

  void Next() {
    const Token token = Now();
    if (token == "[") ++depth_;
    if (token == "]") --depth_;
    const bool is_name = BeginsName(token) || token == "*";  // or else an operator: and, or, times
    behind_operand_ =
        is_name ? !behind_operand_ : IsLiteral(token) || IsOneOf(token, {")", "]", ".", ".."});
    ++at_;
  }

 private:
  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  int depth_ = 0;
  bool behind_operand_ = false;
};

/// True for the "." that a path begins with, directly before what stands here.
bool IsBehindLeadingDot(const TokenWalk& walk) {
  return walk.Back(1) == "." && !IsOneOf(walk.Back(2), {"/", "//"});
}

/// True for a ".." that does not begin its path, so that it may stand for the parents of many.
bool IsLaterParent(const TokenWalk& walk) {
  return walk.Now() == ".." && IsOneOf(walk.Back(1), {"/", "//"});
}

bool IsSteepPath(const TokenWalk& walk) {
  const Token token = walk.Now();
  if (token == "::") return !IsOneOf(walk.Back(1), {"child", "attribute", "self"});
  // From the top, and that for each node that the brackets belong to.
  if (!walk.IsBehindOperand() && IsOneOf(token, {"/", "//"})) return walk.IsInBrackets();
  if (token == "//") return !IsBehindLeadingDot(walk);
  if (token == "id" && walk.Ahead(1) == "(" && !walk.IsBehindOperand()) {
    return walk.IsInBrackets() || !IsLiteral(walk.Ahead(2));
  }
  return token == "|" || IsLaterParent(walk);
}

/// True for a comparison here, unless one side is a single value.
bool IsSteepComparison(const TokenWalk& walk) {
  if (!IsOneOf(walk.Now(), {"=", "!=", "<", "<=", ">", ">="}) || IsLiteral(walk.Back(1))) {
    return false;
  }
  const Token right = walk.Ahead(1);
  const Token next = walk.Ahead(2);
  if (IsLiteral(right) || right == "-") return false;
  if (right == "@") return !BeginsName(next);
  if (right == ".") return IsOneOf(next, {"/", "//"});
  const bool function =
      BeginsName(right) && next == "(" &&
      !IsOneOf(right, {"id", "node", "text", "comment", "processing-instruction"});
  return !function;
}

}  // namespace

bool IsSteep(std::string_view xpath) {
  for (TokenWalk walk(xpath); !walk.AtEnd(); walk.Next()) {
    if (IsSteepPath(walk) || IsSteepComparison(walk)) return true;
  }
  return false;
}

std::optional<SteepStep> FindSteepStep(std::string_view xpath) {
  for (TokenWalk walk(xpath); !walk.AtEnd(); walk.Next()) {
    if (walk.IsInBrackets() || !walk.IsBehindOperand()) continue;
    const std::string_view token = walk.Now();
    const auto at = static_cast<std::size_t>(token.data() - xpath.data());
    if (token == "//") return SteepStep{xpath.substr(0, at), xpath.substr(at), false};
    if (token != "/" || walk.Ahead(1) != "..") continue;
    const std::string_view parent = walk.Ahead(1);
    const auto end = static_cast<std::size_t>(parent.data() + parent.size() - xpath.data());
    return SteepStep{xpath.substr(0, at), xpath.substr(end), true};
  }
  return std::nullopt;
}

}  // namespace zent::xml
