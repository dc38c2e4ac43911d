#include <optional>
#include <utility>

#include "database/BorrowedDatabase.h"
#include "database/Structure.h"

namespace zent {
namespace {

/// The definition as the target's own: whoever copies a link copies what it shows.
TableDefinition OwnTable(TableDefinition definition) {
  definition.attributes &= kTableHidden;
  definition.connect.clear();
  definition.source_table.clear();
  return definition;
}

Status CreateWithIndexes(OpenedDatabase& target, TableDefinition definition) {
  const std::vector<IndexDefinition> indexes = std::exchange(definition.indexes, {});
  if (Status created = target.CreateTable(definition); !created.ok()) return created;
  for (const IndexDefinition& index : indexes) {
    if (index.foreign) continue;
    if (Status made = target.CreateIndex(definition.name, index); !made.ok()) return made;
  }
  return {};
}

Status CopyRows(OpenedDatabase& source, std::string_view table, std::string_view target_path) {
  const std::string name = StatementName(table);
  std::string statement = "INSERT INTO " + name + " IN \"";
  statement.append(target_path).append("\" SELECT * FROM ").append(name);
  return source.Execute(statement).status();
}

}  // namespace

Status CopyTable(UpdateRun& run, const DatabaseArgument& source, const DatabaseArgument& target,
                 const TableArgument& table, std::string_view target_path, TableData data) {
  const Result<BorrowedDatabase> from = BorrowedDatabase::Of(run, source);
  if (!from.ok()) return from.error();
  const Result<BorrowedDatabase> into = BorrowedDatabase::Of(run, target);
  if (!into.ok()) return into.error();

  const Result<std::optional<TableDefinition>> definition = from.value()->Table(table.name());
  if (!definition.ok()) return definition.error();
  if (!definition.value() || TableExists(run, *into.value(), table)) return {};

  return InOneTransaction(*into.value(), [&]() -> Status {
    Status created = CreateWithIndexes(*into.value(), OwnTable(*definition.value()));
    if (!created.ok() || data == TableData::Leave) return created;
    return CopyRows(*from.value(), table.name(), target_path);
  });
}

}  // namespace zent
