#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Status.h"
#include "jet/sql/syntax/Tokenizer.h"

namespace zent::jet {

/// The tokens of a statement from the first to the last, for the parsers.
class TokenStream {
 public:
  /// `statement` is not kept beyond the life of the caller's text; `tokens` end in one of kind End.
  TokenStream(std::string_view statement, std::vector<Token> tokens)
      : statement_(statement), tokens_(std::move(tokens)) {}

  const Token& Peek(std::size_t ahead = 0) const;
  void Skip() { at_ += at_ + 1 < tokens_.size() ? 1U : 0U; }

  bool IsKeyword(std::string_view word, std::size_t ahead = 0) const;
  bool IsMark(std::string_view mark, std::size_t ahead = 0) const;
  /// Takes the token when it is that one.
  bool TakeKeyword(std::string_view word);
  bool TakeMark(std::string_view mark);
  /// The same, an error when it is another.
  Status ExpectKeyword(std::string_view word);
  Status ExpectMark(std::string_view mark);
  /// True when the token can be a name: in brackets, or a word that is not reserved.
  bool IsName(std::size_t ahead = 0) const;
  /// Takes a name; `what` it names is for the error: "a table".
  Result<std::string> ExpectName(std::string_view what);
  /// Takes a whole number from `lowest` to `highest`.
  Result<std::int32_t> ExpectNumber(std::int32_t lowest, std::int32_t highest,
                                    std::string_view what);

  /// Of the token that is next.
  RuntimeError Error(std::string_view reason) const;

  /// One level deeper in brackets, prefixes and queries; false at the limit, which keeps parsing
  /// from exhausting the stack.
  bool Enter();
  void Leave() { --depth_; }

 private:
  std::string_view statement_;
  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  int depth_ = 0;
};

}  // namespace zent::jet
