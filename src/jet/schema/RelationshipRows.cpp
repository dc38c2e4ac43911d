#include "jet/schema/RelationshipRows.h"

#include <array>

#include "base/CaseFold.h"
#include "jet/schema/NamedRow.h"
#include "jet/schema/SystemRows.h"

namespace zent::jet {
namespace {

struct RelationshipColumn {
  enum Place : std::size_t { Name, Table, Column, ReferencedTable, ReferencedColumn };
};
constexpr std::array<std::string_view, 5> kRelationshipColumns = {
    "szRelationship", "szObject", "szColumn", "szReferencedObject", "szReferencedColumn"};

/// The table and the column of one side.
struct Side {
  RelationshipColumn::Place table;
  RelationshipColumn::Place column;
};
constexpr std::array kSides = {
    Side{RelationshipColumn::Table, RelationshipColumn::Column},
    Side{RelationshipColumn::ReferencedTable, RelationshipColumn::ReferencedColumn}};

Status SetText(SystemTable& table, RowPointer row, RelationshipColumn::Place column,
               std::string_view text) {
  const std::array change = {ColumnChange{.position = table.position(column), .value = Text(text)}};
  return table.store().Update(row, change);
}

}  // namespace

Status AddRelationshipRows(UsageMaps& maps, const Relationship& relationship) {
  Result<SystemTable> table = SystemTable::Open(maps, kRelationshipsPage, kRelationshipColumns);
  if (!table.ok()) return table.error();
  TableStore& store = table.value().store();
  const auto count = static_cast<std::int32_t>(relationship.columns.size());
  for (std::int32_t i = 0; i < count; ++i) {
    const auto& [referring, referenced] = relationship.columns[static_cast<std::size_t>(i)];
    Result<std::vector<Value>> row =
        RowOf(store.definition(), {{"szRelationship", relationship.name},
                                   {"grbit", static_cast<std::int32_t>(relationship.flags)},
                                   {"ccolumn", count},
                                   {"icolumn", i},
                                   {"szObject", relationship.table},
                                   {"szColumn", referring},
                                   {"szReferencedObject", relationship.referenced_table},
                                   {"szReferencedColumn", referenced}});
    if (!row.ok()) return row.error();
    if (Result<RowPointer> at = store.Insert(row.value()); !at.ok()) return at.error();
  }
  return {};
}

Status DeleteRelationshipRows(UsageMaps& maps, std::string_view name) {
  Result<SystemTable> table = SystemTable::Open(maps, kRelationshipsPage, kRelationshipColumns);
  if (!table.ok()) return table.error();
  return DeleteRows(table.value(), RelationshipColumn::Name, Text(name));
}

Status RenameRelatedTable(UsageMaps& maps, std::string_view from, std::string_view to) {
  Result<SystemTable> table = SystemTable::Open(maps, kRelationshipsPage, kRelationshipColumns);
  if (!table.ok()) return table.error();
  for (const Side& side : kSides) {
    const Result<std::vector<RowPointer>> rows = FindRows(table.value(), side.table, Text(from));
    if (!rows.ok()) return rows.error();
    for (const RowPointer row : rows.value()) {
      if (Status s = SetText(table.value(), row, side.table, to); !s.ok()) return s;
    }
  }
  return {};
}

Status RenameRelatedColumn(UsageMaps& maps, std::string_view table_name, std::string_view from,
                           std::string_view to) {
  Result<SystemTable> table = SystemTable::Open(maps, kRelationshipsPage, kRelationshipColumns);
  if (!table.ok()) return table.error();
  for (const Side& side : kSides) {
    const Result<std::vector<RowPointer>> rows =
        FindRows(table.value(), side.table, Text(table_name));
    if (!rows.ok()) return rows.error();
    for (const RowPointer row : rows.value()) {
      const Result<std::vector<Value>> values = table.value().store().Fetch(row);
      if (!values.ok()) return values.error();
      const Text* const name =
          std::get_if<Text>(&values.value()[table.value().position(side.column)]);
      if (name == nullptr || !SameName(*name, from)) continue;
      if (Status s = SetText(table.value(), row, side.column, to); !s.ok()) return s;
    }
  }
  return {};
}

}  // namespace zent::jet
