#include <algorithm>
#include <cstddef>
#include <vector>

#include "base/Text.h"
#include "database/SQLFuncs.h"
#include "lib/Dates.h"

namespace zent {
namespace {

constexpr std::string_view kQuotedFunctions[] = {"DateAdd(", "DateDiff(", "Format(", "Contains("};
constexpr std::string_view kContains = kQuotedFunctions[3];

// Whether a text is a date must not depend on the day on which it is asked; in a leap year every
// day of a year exists.
constexpr int kAnyLeapYear = 2000;

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

/// Makes the first and the last double quote of `text` from `start` to `end` "'" again.
void RestoreOuterQuotes(std::string& text, std::size_t start, std::size_t end) {
  const std::size_t first = text.find('"', start);
  if (first >= end) return;  // npos is none, too
  text[first] = '\'';
  const std::size_t last = text.rfind('"', end);
  if (last != std::string::npos && last > first) text[last] = '\'';
}

}  // namespace

std::string QuoteDateLiterals(std::string_view statement) {
  std::string text(statement);
  std::size_t opening = statement.find('#');
  while (opening != std::string_view::npos) {
    const std::size_t closing = statement.find('#', opening + 1);
    const std::size_t end = std::min(closing, statement.size());
    if (IsDate(statement.substr(opening + 1, end - opening - 1), kAnyLeapYear)) {
      text[opening] = '\'';
      if (closing != std::string_view::npos) text[closing] = '\'';
    }
    opening = closing;
  }
  return text;
}

std::string QuoteFunctionArguments(std::string_view statement) {
  std::string text(statement);
  // Characters change for characters: positions stay.
  const std::vector<std::size_t> closing = ClosingParentheses(statement);
  for (const std::string_view name : kQuotedFunctions) {
    std::size_t start = FindIgnoringCase(text, name);
    for (; start != std::string::npos; start = FindIgnoringCase(text, name, start + 1)) {
      const std::size_t end = closing[start + name.size() - 1];
      if (end == std::string_view::npos) continue;
      const auto first = text.begin() + static_cast<std::ptrdiff_t>(start);
      const auto behind = text.begin() + static_cast<std::ptrdiff_t>(end);
      std::replace(first, behind, '\'', '"');
      if (name == kContains) RestoreOuterQuotes(text, start, end);
    }
  }
  return text;
}

}  // namespace zent
