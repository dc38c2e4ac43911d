#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>

#include "base/CaseFold.h"
#include "jet/store/IndexCursor.h"
#include "jet/tools/CatalogCheck.h"
#include "jet/tools/CatalogRows.h"

namespace zent::jet {
namespace {

constexpr std::int32_t kNotEnforcedFlag = 2;  // of the flags of a relationship
constexpr std::int32_t kRelationshipType = 8;

bool HasColumn(const TableDefinition& table, std::string_view name) {
  return std::any_of(table.columns.begin(), table.columns.end(),
                     [&](const ColumnDefinition& one) { return SameName(one.name, name); });
}

const LogicalIndex* IndexOf(const TableDefinition& table, std::int32_t number) {
  const auto found = std::find_if(table.logical_indexes.begin(), table.logical_indexes.end(),
                                  [&](const LogicalIndex& index) {
                                    return index.number == static_cast<std::uint32_t>(number);
                                  });
  return found == table.logical_indexes.end() ? nullptr : &*found;
}

const RealIndex& TreeOf(const TableDefinition& table, const LogicalIndex& index) {
  return table.real_indexes[index.real];
}

/// The types of the columns of an index.
std::vector<ColumnType> TypesOf(const TableDefinition& table, const LogicalIndex& index) {
  std::vector<ColumnType> types;
  for (const IndexColumn& column : TreeOf(table, index).columns) {
    const ColumnDefinition* const found = table.ColumnOf(column.column);
    if (found != nullptr) types.push_back(found->type);
  }
  return types;
}

bool SameOrder(const RealIndex& a, const RealIndex& b) {
  return std::equal(
      a.columns.begin(), a.columns.end(), b.columns.begin(), b.columns.end(),
      [](const IndexColumn& x, const IndexColumn& y) { return x.ascending == y.ascending; });
}

}  // namespace

const CatalogCheck::KnownTable* CatalogCheck::Find(std::string_view name) const {
  const auto found = std::find_if(tables_.begin(), tables_.end(), [&](const auto& entry) {
    return SameName(entry.second.name, name);
  });
  return found == tables_.end() ? nullptr : &found->second;
}

void CatalogCheck::CheckRelationships() {
  for (const auto& [page, table] : tables_) {
    for (const LogicalIndex& index : table.definition.logical_indexes) CheckPartner(table, index);
  }
  const Result<std::unique_ptr<TableStore>> rows = TableStore::Open(maps_, kRelationshipsPage);
  if (!rows.ok()) return;
  std::map<std::string, RelationshipRows> relationships;
  const Status read = ForEachCatalogRow(*rows.value(), [&](const CatalogRow& row) {
    CheckRelationshipRow(row, relationships[FoldName(row.TextOf("szRelationship"))]);
    return true;
  });
  if (!read.ok()) faults_.Add("relationships", read.error());
  for (const auto& [name, relationship] : relationships) CheckRelationship(relationship);
  for (const CheckedObject& object : objects_) {
    if (object.type != kRelationshipType || relationships.contains(FoldName(object.name))) continue;
    faults_.Add("relationship " + object.name, "it is in the catalog, but has no columns");
  }
}

void CatalogCheck::CheckRelationshipRow(const CatalogRow& row, RelationshipRows& known) {
  known.name = row.TextOf("szRelationship");
  known.table = row.TextOf("szObject");
  known.referenced = row.TextOf("szReferencedObject");
  known.flags = row.Number("grbit");
  known.columns = row.Number("ccolumn");
  ++known.rows;
  known.places.insert(row.Number("icolumn"));
  const std::string subject = "relationship " + known.name;
  const auto check = [&](const std::string& table_name, const std::string& column) {
    const KnownTable* const table = Find(table_name);
    if (table == nullptr) {
      // Relationships of linked tables are kept with the names of these.
      const bool other = std::any_of(objects_.begin(), objects_.end(), [&](const auto& object) {
        return !object.IsTable() && SameName(object.name, table_name);
      });
      if (!other) faults_.Add(subject, "there is no table " + table_name);
    } else if (!HasColumn(table->definition, column)) {
      faults_.Add(subject, fmt::format("table {} has no column {}", table_name, column));
    }
  };
  check(known.table, row.TextOf("szColumn"));
  check(known.referenced, row.TextOf("szReferencedColumn"));
}

void CatalogCheck::CheckRelationship(const RelationshipRows& known) {
  const std::string subject = "relationship " + known.name;
  const auto count = static_cast<std::int64_t>(known.places.size());
  if (known.rows != known.columns || count != known.rows || *known.places.begin() != 0 ||
      *known.places.rbegin() != known.columns - 1) {
    faults_.Add(subject, fmt::format("{} rows for its {} columns, or not each once", known.rows,
                                     known.columns));
  }
  if ((known.flags & kNotEnforcedFlag) != 0) return;
  const bool in_catalog = std::any_of(objects_.begin(), objects_.end(), [&](const auto& object) {
    return object.type == kRelationshipType && SameName(object.name, known.name);
  });
  if (!in_catalog) faults_.Add(subject, "it is enforced, but is not in the catalog");
  const KnownTable* const table = Find(known.table);
  const KnownTable* const referenced = Find(known.referenced);
  if (table == nullptr || referenced == nullptr) return;
  const auto& indexes = table->definition.logical_indexes;
  const bool backed = std::any_of(indexes.begin(), indexes.end(), [&](const LogicalIndex& index) {
    return index.kind == IndexKind::Foreign && index.other_table == referenced->page &&
           SameName(index.name, known.name);
  });
  if (!backed) faults_.Add(subject, "it is enforced, but table " + table->name + " has no index");
}

/// The two indexes of an enforced relationship name each other.
void CatalogCheck::CheckPartner(const KnownTable& table, const LogicalIndex& index) {
  if (index.kind != IndexKind::Foreign) return;
  const std::string subject = fmt::format("table {}, index {}", table.name, index.name);
  const auto other = tables_.find(index.other_table);
  if (other == tables_.end()) {
    return faults_.Add(subject,
                       fmt::format("page {} of its partner is no table", index.other_table));
  }
  const LogicalIndex* const partner = IndexOf(other->second.definition, index.partner);
  if (partner == nullptr) {
    return faults_.Add(subject, fmt::format("table {} has no index {}, its partner",
                                            other->second.name, index.partner));
  }
  const bool names_back =
      partner->kind == IndexKind::Foreign && partner->other_table == table.page &&
      partner->partner == static_cast<std::int32_t>(index.number) && partner->side != index.side;
  if (!names_back) {
    return faults_.Add(subject, fmt::format("index {} of table {} does not name it as its partner",
                                            partner->name, other->second.name));
  }
  if (TypesOf(table.definition, index) != TypesOf(other->second.definition, *partner)) {
    faults_.Add(subject, "the columns of its partner are of other types");
  } else if (index.side == ForeignSide::Referring) {
    CheckReferences(table, index, other->second, *partner);
  }
}

/// Every key of the referring index is one of the other, unless it is that of nulls alone. Keys of
/// equal types and directions are written alike.
void CatalogCheck::CheckReferences(const KnownTable& table, const LogicalIndex& index,
                                   const KnownTable& other, const LogicalIndex& partner) {
  const RealIndex& from = TreeOf(table.definition, index);
  const RealIndex& to = TreeOf(other.definition, partner);
  if (!SameOrder(from, to)) return;
  IndexCursor referring(maps_.pager(), table.page, from.root);
  IndexCursor referenced(maps_.pager(), other.page, to.root);
  std::string last;
  Result<bool> on = referring.SeekFirst();
  for (; on.value_or(false); on = referring.Next()) {
    std::string key = referring.key();
    if (key == last || key.size() == from.columns.size()) continue;
    last = std::move(key);
    const Result<bool> found = referenced.Seek(last);
    if (!found.ok()) return;
    if (found.value() && referenced.key() == last) continue;
    faults_.Add(fmt::format("table {}, index {}", table.name, index.name),
                fmt::format("page {} row {} refers to a row that is not in {}",
                            referring.row().page, referring.row().row, other.name));
  }
}

}  // namespace zent::jet
