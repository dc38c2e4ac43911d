#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/format/Value.h"

/// The words, values and marks of a statement of the Access dialect. It has no comments.
namespace zent::jet {

enum class TokenKind {
  Word,     ///< a keyword or a name: the parser decides
  Name,     ///< written in brackets or back quotes: never a keyword
  Literal,  ///< a number, a text or a date
  Mark,     ///< an operator, bracket, comma ...
  End,
};

struct Token {
  TokenKind kind = TokenKind::End;
  std::string text = {};  ///< words as written, names without brackets, marks
  Value value = {};       ///< of a literal
  std::size_t at = 0;     ///< byte where it starts in the statement

  bool Is(TokenKind wanted, std::string_view wanted_text) const;
};

/// The tokens of `statement`, UTF-8, with one of kind End behind them. kSyntaxError for a text,
/// name or date that does not end, a number or date that is none, and characters of no meaning.
///
/// Whole numbers are Int, Long or double, whichever is the first to hold them; &H numbers of up to
/// 16 bits are Int, of up to 32 Long, negative where the highest bit is set, as in BASIC.
Result<std::vector<Token>> Tokenize(std::string_view statement);

}  // namespace zent::jet
