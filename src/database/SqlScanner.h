#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zent {

/// A "*" of a statement.
struct SqlStar {
  std::size_t at = 0;
  bool pattern = false;      ///< in a quoted text that LIKE compares with
  bool column_list = false;  ///< stands for columns: "SELECT *", "T.*", "Count(*)"
};

/// Whether a byte can be one of a plain name: a letter, a digit, "_", any byte beyond ASCII.
bool IsNameByte(char character);

/// Every "*" of `statement`, in order. Quotes of both kinds, names in brackets and parentheses are
/// followed; nothing else is known of the grammar. Takes time in proportion to the statement.
std::vector<SqlStar> FindStars(std::string_view statement);

/// For each "(" the position of the ")" that closes it, npos elsewhere and where nothing does.
/// Quotes are not looked at.
std::vector<std::size_t> ClosingParentheses(std::string_view statement);

}  // namespace zent
