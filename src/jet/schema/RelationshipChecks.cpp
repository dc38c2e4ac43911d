#include "jet/schema/RelationshipChecks.h"

#include <algorithm>

#include "jet/format/IndexKey.h"
#include "jet/format/JetErrors.h"
#include "jet/schema/NamedRow.h"
#include "jet/store/TableStore.h"

namespace zent::jet {
namespace {

/// Numbers of two columns that belong together, and where the relationship names them.
struct Pair {
  std::uint16_t referring = 0;
  std::uint16_t referenced = 0;
  std::size_t place = 0;
};

Result<std::vector<Pair>> PairsOf(const Relationship& relationship,
                                  const TableDefinition& referring,
                                  const TableDefinition& referenced) {
  std::vector<Pair> pairs;
  for (const auto& [left, right] : relationship.columns) {
    const Result<std::size_t> from = ColumnPosition(referring, left);
    if (!from.ok()) return from.error();
    const Result<std::size_t> to = ColumnPosition(referenced, right);
    if (!to.ok()) return to.error();
    const ColumnDefinition& one = referring.columns[from.value()];
    const ColumnDefinition& other = referenced.columns[to.value()];
    if (one.type != other.type || one.type == ColumnType::Ole) return JetError(kRelationMismatch);
    const bool twice = std::any_of(pairs.begin(), pairs.end(), [&](const Pair& pair) {
      return pair.referring == one.number || pair.referenced == other.number;
    });
    if (twice) return JetError(kFieldDefinedTwice);
    pairs.push_back({.referring = one.number, .referenced = other.number, .place = pairs.size()});
  }
  return pairs;
}

/// Puts `pairs` into the order of the columns of `index`; false when those are others.
bool FollowIndex(const RealIndex& index, std::vector<Pair>& pairs) {
  if (!index.IsUnique() || index.columns.size() != pairs.size()) return false;
  std::vector<Pair> ordered;
  for (const IndexColumn& column : index.columns) {
    const auto pair = std::find_if(pairs.begin(), pairs.end(), [&](const Pair& one) {
      return one.referenced == column.column;
    });
    if (pair == pairs.end()) return false;
    ordered.push_back(*pair);
  }
  pairs = std::move(ordered);
  return true;
}

Status CheckRow(TableStore& table, const RelationshipPlan& plan, TableIndex& index,
                const RowScan& scan) {
  const Result<RowFields> fields = LoadFields(table.definition(), scan.bytes(), scan.page());
  if (!fields.ok()) return fields.error();
  std::vector<Value> values;
  for (const IndexColumn& part : plan.referring) {
    const std::vector<ColumnDefinition>& columns = table.definition().columns;
    const auto at = std::find_if(columns.begin(), columns.end(), [&](const ColumnDefinition& one) {
      return one.number == part.column;
    });
    const auto position = static_cast<std::size_t>(at - columns.begin());
    Result<Value> value =
        FieldValue(index.tree().maps().pager(), *at, fields.value()[position], scan.page());
    if (!value.ok()) return value.error();
    values.push_back(std::move(value.value()));
  }
  if (std::all_of(values.begin(), values.end(), IsNull)) return {};
  const Result<std::string> key = IndexKey(index.key_columns(), values);
  if (!key.ok()) return key.error();
  const Result<bool> there = index.tree().HasKey(key.value());
  if (!there.ok()) return there.error();
  if (there.value()) return {};
  return JetError(kNoRelatedRecord, plan.relationship.referenced_table);
}

}  // namespace

Result<RelationshipPlan> PlanRelationship(const Relationship& relationship,
                                          const TableDefinition& referring,
                                          const TableDefinition& referenced) {
  if (relationship.columns.empty()) {
    return JetErrorBecause(kInvalidArgument, "a relationship without fields");
  }
  if (relationship.columns.size() > kMaxIndexColumns) return JetError(kTooManyIndexFields);
  Result<std::vector<Pair>> pairs = PairsOf(relationship, referring, referenced);
  if (!pairs.ok()) return pairs.error();

  RelationshipPlan plan{.relationship = relationship};
  if (relationship.enforced()) {
    const auto index =
        std::find_if(referenced.real_indexes.begin(), referenced.real_indexes.end(),
                     [&](const RealIndex& one) { return FollowIndex(one, pairs.value()); });
    if (index == referenced.real_indexes.end()) return JetError(kNoUniqueIndex);
    plan.referenced_index = static_cast<std::size_t>(index - referenced.real_indexes.begin());
  }
  plan.relationship.columns.clear();
  for (const Pair& pair : pairs.value()) {
    plan.relationship.columns.push_back(relationship.columns[pair.place]);
    plan.referring.push_back({.column = pair.referring});
  }
  return plan;
}

Status CheckReferences(UsageMaps& maps, const RelationshipPlan& plan, PageNumber referring,
                       PageNumber referenced) {
  const Result<std::unique_ptr<TableStore>> from = TableStore::Open(maps, referring);
  if (!from.ok()) return from.error();
  const Result<std::unique_ptr<TableStore>> to = TableStore::Open(maps, referenced);
  if (!to.ok()) return to.error();
  TableIndex& index = to.value()->indexes()[plan.referenced_index];
  RowScan scan(from.value()->rows());
  Result<bool> more = scan.Next();
  for (; more.value_or(false); more = scan.Next()) {
    if (Status s = CheckRow(*from.value(), plan, index, scan); !s.ok()) return s;
  }
  return more.status();
}

std::optional<std::size_t> FindTree(const TableDefinition& table,
                                    const std::vector<IndexColumn>& columns) {
  const auto at = std::find_if(table.real_indexes.begin(), table.real_indexes.end(),
                               [&](const RealIndex& index) { return index.columns == columns; });
  if (at == table.real_indexes.end()) return {};
  return static_cast<std::size_t>(at - table.real_indexes.begin());
}

}  // namespace zent::jet
