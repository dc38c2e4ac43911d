#include "jet/sql/syntax/TokenStream.h"

#include <algorithm>

#include "jet/sql/syntax/Keywords.h"
#include "jet/sql/syntax/SyntaxError.h"

namespace zent::jet {

const Token& TokenStream::Peek(std::size_t ahead) const {
  return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
}

bool TokenStream::IsKeyword(std::string_view word, std::size_t ahead) const {
  return Peek(ahead).Is(TokenKind::Word, word);
}

bool TokenStream::IsMark(std::string_view mark, std::size_t ahead) const {
  return Peek(ahead).Is(TokenKind::Mark, mark);
}

bool TokenStream::TakeKeyword(std::string_view word) {
  if (!IsKeyword(word)) return false;
  Skip();
  return true;
}

bool TokenStream::TakeMark(std::string_view mark) {
  if (!IsMark(mark)) return false;
  Skip();
  return true;
}

Status TokenStream::ExpectKeyword(std::string_view word) {
  if (TakeKeyword(word)) return {};
  return Error(std::string(word) + " expected");
}

Status TokenStream::ExpectMark(std::string_view mark) {
  if (TakeMark(mark)) return {};
  return Error(std::string(mark) + " expected");
}

bool TokenStream::IsName(std::size_t ahead) const {
  const Token& token = Peek(ahead);
  return token.kind == TokenKind::Name ||
         (token.kind == TokenKind::Word && !IsReservedWord(token.text));
}

Result<std::string> TokenStream::ExpectName(std::string_view what) {
  if (!IsName()) return Error("name of " + std::string(what) + " expected");
  std::string name = Peek().text;
  Skip();
  return name;
}

Result<std::int32_t> TokenStream::ExpectNumber(std::int32_t lowest, std::int32_t highest,
                                               std::string_view what) {
  const Token& token = Peek();
  std::int32_t number = lowest - 1;
  if (const auto* small = std::get_if<std::int16_t>(&token.value)) number = *small;
  if (const auto* large = std::get_if<std::int32_t>(&token.value)) number = *large;
  if (token.kind != TokenKind::Literal || number < lowest || number > highest) {
    return Error(std::string(what) + " from " + std::to_string(lowest) + " to " +
                 std::to_string(highest) + " expected");
  }
  Skip();
  return number;
}

bool TokenStream::Enter() {
  constexpr int kMaxDepth = 100;
  if (depth_ == kMaxDepth) return false;
  ++depth_;
  return true;
}

RuntimeError TokenStream::Error(std::string_view reason) const {
  return SyntaxError(statement_, Peek().at, reason);
}

}  // namespace zent::jet
