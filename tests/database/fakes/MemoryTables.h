#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "database/port/TableDefinition.h"

namespace zent::testing {

using MemoryRow = std::vector<FieldValue>;

struct MemoryTable {
  TableDefinition definition;
  std::vector<MemoryRow> rows;

  std::optional<std::size_t> PositionOf(std::string_view field) const;
  /// The text of a field, by its name.
  std::string Text(std::size_t row, std::string_view field) const;
};

/// What a database holds, as long as a test runs: it stays when a database is closed.
struct MemoryTables {
  std::vector<MemoryTable> tables;
  std::vector<RelationDefinition> relations;

  MemoryTable* Find(std::string_view name);
  /// Adds a table of text fields.
  MemoryTable& Add(std::string name, const std::vector<std::string>& fields,
                   std::vector<MemoryRow> rows = {});
  /// All of it, a line for each table with its fields and indexes, row and relationship:
  /// "Companies: Name 10 50, City 10 50; ByName", "  Zent|Ulm", "Companies > Contacts". Types by
  /// their numbers.
  std::vector<std::string> Describe() const;
};

/// The few statements that the fake knows: "SELECT * FROM t", "UPDATE t SET f='v'" (or f=f), each
/// with conditions "f='v'" or "1=2" joined by AND; "INSERT INTO t IN "path" SELECT * FROM t".
struct MemoryStatement {
  std::string verb;  ///< in small letters
  std::string table;
  std::string path;                                          ///< of an INSERT
  std::vector<std::pair<std::string, std::string>> changes;  ///< field and text
  std::vector<std::pair<std::string, std::string>> conditions;

  bool Matches(const MemoryTable& table, const MemoryRow& row) const;
};

/// Nothing for a statement that the fake does not know.
std::optional<MemoryStatement> ParseMemoryStatement(std::string_view statement);

}  // namespace zent::testing
