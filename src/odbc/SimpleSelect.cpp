#include "odbc/SimpleSelect.h"

#include "base/Text.h"

namespace zent::odbc {
namespace {

constexpr std::string_view kSpaces = " \t\r\n";

void SkipSpaces(std::string_view& text) {
  const std::size_t start = text.find_first_not_of(kSpaces);
  text.remove_prefix(start == std::string_view::npos ? text.size() : start);
}

/// Takes `word` and what blanks stand around it; it must end where a name would.
bool TakeWord(std::string_view& text, std::string_view word) {
  SkipSpaces(text);
  if (!EqualsIgnoringCase(text.substr(0, word.size()), word)) return false;
  const std::string_view rest = text.substr(word.size());
  if (!rest.empty() && kSpaces.find(rest.front()) == std::string_view::npos) return false;
  text = rest;
  SkipSpaces(text);
  return true;
}

bool HasWord(std::string_view text, std::string_view word) {
  for (std::size_t at = FindIgnoringCase(text, word); at != std::string_view::npos;
       at = FindIgnoringCase(text, word, at + 1)) {
    std::string_view rest = text.substr(at);
    const bool starts = at > 0 && kSpaces.find(text[at - 1]) != std::string_view::npos;
    if (starts && TakeWord(rest, word)) return true;
  }
  return false;
}

/// Texts and quoted names as blanks, so that no word in them counts.
std::string WithoutQuoted(std::string_view text) {
  std::string bare(text);
  char quote = 0;
  for (char& c : bare) {
    const char met = c;
    if (quote != 0 || met == '\'' || met == '"' || met == '`') c = 'x';
    if (quote == 0 && c == 'x' && met != 'x') {
      quote = met;
    } else if (quote == met) {
      quote = 0;
    }
  }
  return bare;
}

}  // namespace

std::optional<SelectedTable> TableOfSelect(std::string_view sql) {
  if (!TakeWord(sql, "SELECT")) return std::nullopt;
  if (sql.substr(0, 1) != "*") return std::nullopt;
  sql.remove_prefix(1);
  if (!TakeWord(sql, "FROM")) return std::nullopt;
  const std::string_view start = sql;
  std::optional<TableName> table = TakeTableName(sql);
  if (!table) return std::nullopt;
  std::string written(start.substr(0, start.size() - sql.size()));
  SkipSpaces(sql);
  if (sql.substr(0, 1) == ";") sql.remove_prefix(1);
  SkipSpaces(sql);
  const std::string rest = WithoutQuoted(sql);
  std::string_view tail = rest;
  const bool ends = tail.empty() || TakeWord(tail, "WHERE") || TakeWord(tail, "ORDER");
  if (!ends) return std::nullopt;
  for (const std::string_view word : {"UNION", "GROUP", "EXCEPT", "INTERSECT"}) {
    if (HasWord(rest, word)) return std::nullopt;
  }
  return SelectedTable{std::move(*table), std::move(written)};
}

}  // namespace zent::odbc
