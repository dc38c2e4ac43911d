#include "database/fakes/MemoryTables.h"

#include <fmt/format.h>

#include <algorithm>
#include <regex>
#include <utility>

#include "base/CaseFold.h"
#include "base/Text.h"

namespace zent::testing {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

/// "f='v' AND g='w'" as pairs; a doubled quote is one.
Pairs ParsePairs(const std::string& text) {
  static const std::regex pair_form(R"re((\w+) ?= ?(?:'((?:[^']|'')*)'|(\w+)))re");
  Pairs pairs;
  for (std::sregex_iterator at(text.begin(), text.end(), pair_form), end; at != end; ++at) {
    const std::string value = (*at)[3].matched ? "\n" + (*at)[3].str() : (*at)[2].str();
    pairs.emplace_back((*at)[1].str(), ReplaceAllIgnoringCase(value, "''", "'"));
  }
  return pairs;
}

std::string Unbracketed(std::string name) {
  if (name.starts_with('[')) name = name.substr(1, name.size() - 2);
  return name;
}

}  // namespace

std::optional<std::size_t> MemoryTable::PositionOf(std::string_view field) const {
  for (std::size_t i = 0; i < definition.fields.size(); ++i) {
    if (SameName(definition.fields[i].name, field)) return i;
  }
  return std::nullopt;
}

std::string MemoryTable::Text(std::size_t row, std::string_view field) const {
  return rows.at(row).at(PositionOf(field).value()).AsText();
}

MemoryTable* MemoryTables::Find(std::string_view name) {
  const auto found = std::find_if(tables.begin(), tables.end(), [&](const MemoryTable& table) {
    return SameName(table.definition.name, name);
  });
  return found == tables.end() ? nullptr : &*found;
}

MemoryTable& MemoryTables::Add(std::string name, const std::vector<std::string>& fields,
                               std::vector<MemoryRow> rows) {
  MemoryTable table{.definition = {.name = std::move(name)}, .rows = std::move(rows)};
  for (const std::string& field : fields) {
    table.definition.fields.push_back({.name = field, .type = FieldType::Text, .size = 50});
  }
  tables.push_back(std::move(table));
  return tables.back();
}

std::vector<std::string> MemoryTables::Describe() const {
  std::vector<std::string> lines;
  for (const MemoryTable& table : tables) {
    std::string line = table.definition.name;
    const char* separator = ": ";
    for (const FieldDefinition& field : table.definition.fields) {
      line += fmt::format("{}{} {} {}", std::exchange(separator, ", "), field.name,
                          static_cast<int>(field.type), field.size);
    }
    for (const IndexDefinition& index : table.definition.indexes) line += "; " + index.name;
    lines.push_back(line);
    for (const MemoryRow& row : table.rows) {
      line = " ";
      separator = " ";
      for (const FieldValue& value : row) {
        line += std::exchange(separator, "|") + value.AsText();
      }
      lines.push_back(line);
    }
  }
  for (const RelationDefinition& relation : relations) {
    lines.push_back(relation.table + " > " + relation.foreign_table);
  }
  return lines;
}

bool MemoryStatement::Matches(const MemoryTable& memory, const MemoryRow& row) const {
  return std::all_of(conditions.begin(), conditions.end(), [&](const auto& condition) {
    const auto position = memory.PositionOf(condition.first);
    return position && row.at(*position).AsText() == condition.second;
  });
}

std::optional<MemoryStatement> ParseMemoryStatement(std::string_view statement) {
  static const std::string name_form = R"re((\[[^\]]*\]|\w+))re";
  static const std::regex select_form("select \\* from " + name_form + "(?: where (.*))?\\s*",
                                      std::regex::icase);
  static const std::regex update_form("update " + name_form + " set (.*?)(?: where (.*))?\\s*",
                                      std::regex::icase);
  static const std::regex insert_form(
      "insert into " + name_form + " in \"([^\"]*)\" select \\* from .*", std::regex::icase);
  const std::string text(statement);
  std::smatch match;
  if (std::regex_match(text, match, select_form)) {
    return MemoryStatement{.verb = "select",
                           .table = Unbracketed(match[1]),
                           .path = {},
                           .changes = {},
                           .conditions = ParsePairs(match[2])};
  }
  if (std::regex_match(text, match, update_form)) {
    return MemoryStatement{.verb = "update",
                           .table = Unbracketed(match[1]),
                           .path = {},
                           .changes = ParsePairs(match[2]),
                           .conditions = ParsePairs(match[3])};
  }
  if (std::regex_match(text, match, insert_form)) {
    return MemoryStatement{.verb = "insert",
                           .table = Unbracketed(match[1]),
                           .path = match[2],
                           .changes = {},
                           .conditions = {}};
  }
  return std::nullopt;
}

}  // namespace zent::testing
