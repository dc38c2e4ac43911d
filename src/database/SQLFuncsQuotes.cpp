#include <algorithm>
#include <cstddef>
#include <vector>

#include "base/Text.h"
#include "database/SQLFuncs.h"
#include "database/SqlScanner.h"
#include "lib/Dates.h"

namespace zent {
namespace {

constexpr std::string_view kQuotedFunctions[] = {"DateAdd(", "DateDiff(", "Format("};
constexpr std::string_view kContains = "Contains(";

// Whether a text is a date must not depend on the day on which it is asked; in a leap year every
// day of a year exists.
constexpr int kAnyLeapYear = 2000;

/// A call of Contains around the present position.
struct ContainsCall {
  std::size_t end;
  bool has_quotes = false;
  std::size_t last_quote = std::string::npos;  ///< npos when an inner call holds the last one
};

/// Turns the quotes within the closed calls of `name`. Those within a call that has been turned are
/// turned already.
void QuoteCalls(std::string& text, std::string_view name, const std::vector<std::size_t>& closing) {
  std::size_t turned = 0;
  std::size_t start = FindIgnoringCase(text, name);
  for (; start != std::string::npos; start = FindIgnoringCase(text, name, start + 1)) {
    const std::size_t end = closing[start + name.size() - 1];
    if (end == std::string_view::npos || start < turned) continue;
    const auto first = text.begin() + static_cast<std::ptrdiff_t>(start);
    const auto behind = text.begin() + static_cast<std::ptrdiff_t>(end);
    std::replace(first, behind, '\'', '"');
    turned = end;
  }
}

/// Turns the quotes within the closed calls of Contains, and the outermost ones of each call back.
/// The calls take their turns from left to right, an inner one after the outer: so the innermost
/// call around a quote decides, and one way through the text is enough.
void QuoteContains(std::string& text, const std::vector<std::size_t>& closing) {
  std::vector<ContainsCall> calls;
  std::size_t next = FindIgnoringCase(text, kContains);
  for (std::size_t at = std::min(next, text.size()); at < text.size(); ++at) {
    if (at == next) {
      const std::size_t end = closing[at + kContains.size() - 1];
      if (end != std::string_view::npos) calls.push_back({.end = end});
      next = FindIgnoringCase(text, kContains, at + 1);
    }
    if (calls.empty()) continue;
    ContainsCall& call = calls.back();
    if (text[at] == '\'' || text[at] == '"') {
      text[at] = call.has_quotes ? '"' : '\'';
      call.has_quotes = true;
      call.last_quote = at;
    }
    if (at < call.end) continue;
    if (call.last_quote != std::string::npos) text[call.last_quote] = '\'';
    const bool had_quotes = call.has_quotes;
    calls.pop_back();
    if (!had_quotes || calls.empty()) continue;
    calls.back().has_quotes = true;
    calls.back().last_quote = std::string::npos;
  }
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
  for (const std::string_view name : kQuotedFunctions) QuoteCalls(text, name, closing);
  QuoteContains(text, closing);
  return text;
}

}  // namespace zent
