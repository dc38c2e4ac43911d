#include <cstddef>
#include <utility>
#include <vector>

#include "base/Text.h"
#include "database/SQLFuncs.h"

namespace zent {
namespace {

constexpr std::string_view kUnion = " UNION ";
constexpr std::string_view kFrom = " FROM ";

/// `text` cut at every `separator`, in any case.
std::vector<std::string> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string> pieces;
  std::size_t start = 0;
  for (std::size_t at = 0; at != std::string_view::npos; start = at + separator.size()) {
    at = FindIgnoringCase(text, separator, start);
    pieces.emplace_back(text.substr(start, at == std::string_view::npos ? at : at - start));
    if (at == std::string_view::npos) break;
  }
  return pieces;
}

/// A column "date as NAME" loses the reserved word; "LastDate as NAME" has none.
std::string RenameDateColumn(std::string column) {
  constexpr std::string_view kDateAs = "date as";
  const std::string_view trimmed = TrimBlanks(column);
  if (!EqualsIgnoringCase(trimmed.substr(0, kDateAs.size()), kDateAs)) return column;
  const std::string_view rest = trimmed.substr(kDateAs.size());
  if (!rest.empty() && rest.front() != ' ') return column;
  return "Date_ AS" + std::string(rest);
}

std::string RenameDateColumns(std::string_view columns) {
  std::string renamed;
  bool is_first = true;
  for (const std::string& column : Split(columns, ",")) {
    if (!std::exchange(is_first, false)) renamed += ",";
    renamed += RenameDateColumn(column);
  }
  return renamed;
}

}  // namespace

std::string NormaliseSpaces(std::string_view statement) {
  std::string text;
  char quote = 0;
  for (char character : statement) {
    if (character == '\r' || character == '\n') character = ' ';
    if (quote != 0) {
      text += character;
      if (character == quote) quote = 0;
      continue;
    }
    // What stands last is outside quotes, or the quote that closed them.
    const bool behind_blank = text.ends_with(' ');
    if (character == ' ' && (behind_blank || text.ends_with(','))) continue;
    if (character == ',' && behind_blank) text.pop_back();
    if (character == '\'' || character == '"') quote = character;
    text += character;
  }
  return text;
}

std::optional<SelectParts> SplitSelect(std::string_view statement) {
  constexpr std::string_view kSelect = "select";
  constexpr std::string_view kSelectTop = "select top ";
  const std::string normal = NormaliseSpaces(statement);
  const std::string_view text = TrimBlanks(normal);
  const std::size_t from = FindIgnoringCase(text, kFrom);
  const std::size_t top = FindIgnoringCase(text, kSelectTop);
  const std::size_t select = FindIgnoringCase(text, kSelect);
  if (from == std::string_view::npos || select == std::string_view::npos) return std::nullopt;

  const bool has_top = top != std::string_view::npos;
  const std::size_t head =
      text.find(' ', has_top ? top + kSelectTop.size() : select + kSelect.size());
  if (head == std::string_view::npos || head > from) return std::nullopt;
  return SelectParts{.head = std::string(text.substr(0, head)),
                     .columns = std::string(TrimBlanks(text.substr(head, from - head))),
                     .from = std::string(text.substr(from + 1))};
}

std::string TranslateUnionForOracle(std::string_view statement) {
  std::string text = ReplaceAllIgnoringCase(statement, kLineBreak, " ");
  for (char& character : text) {
    if (character == '\r' || character == '\n') character = ' ';
  }
  if (FindIgnoringCase(text, kUnion) == std::string::npos) return text;

  std::string joined;
  for (const std::string& piece : Split(text, kUnion)) {
    const std::optional<SelectParts> select = SplitSelect(piece);
    if (!select) return std::string(kUnparsableStatement);
    if (!joined.empty()) joined += kUnion;
    joined += select->head + " " + RenameDateColumns(select->columns) + " " + select->from;
  }
  return joined;
}

}  // namespace zent
