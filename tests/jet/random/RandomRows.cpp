#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/random/RandomDatabase.h"

/// Random changes of rows.
namespace zent::jet::testing {
namespace {

/// A place that no row has, for a row that has none yet.
RowPointer NoPlace() { return RowPointer::FromPacked(0xFFFFFFFF); }

std::vector<Value> ByDefinition(Table& table, const ModelTable& model, const ModelRow& row) {
  std::vector<Value> values(table.definition().columns.size());
  for (std::size_t i = 0; i < row.size(); ++i) {
    values[table.PositionOf(model.columns[i].name).value()] = row[i];
  }
  return values;
}

}  // namespace

void RandomDatabase::ChangeRows(ModelTable& table) {
  const std::size_t kind = random_.Pick(10);
  if (kind < 5 || table.rows.empty()) return Insert(table);
  if (kind < 8) return Update(table);
  Delete(table);
}

ModelRow RandomDatabase::MakeRow(const ModelTable& table) {
  ModelRow row;
  for (const ModelColumn& column : table.columns) row.push_back(random_.ValueFor(column));
  // Half of what refers to other rows finds one.
  for (const ModelRelation& relation : model_.relations) {
    if (relation.table != table.name || random_.Chance(2)) continue;
    const ModelTable& referenced = *model_.Find(relation.referenced);
    if (referenced.rows.empty()) continue;
    const auto other = std::next(referenced.rows.begin(),
                                 static_cast<std::ptrdiff_t>(random_.Pick(referenced.rows.size())));
    row[table.PositionOf(relation.column)] =
        other->second[referenced.PositionOf(relation.referenced_column)];
  }
  return row;
}

void RandomDatabase::Insert(ModelTable& table) {
  const Result<Table*> opened = catalog_->OpenTable(table.name);
  ASSERT_TRUE(opened.ok()) << opened.error().description;
  ModelRow row = MakeRow(table);
  std::vector<Value> values;
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (table.columns[i].auto_number) row[i] = table.last_number + 1;
  }
  values = ByDefinition(*opened.value(), table, row);
  for (const ModelColumn& column : table.columns) {
    if (column.auto_number) values[opened.value()->PositionOf(column.name).value()] = Null();
  }
  DatabaseModel next = model_;
  const Faults faults = next.Insert(table.name, NoPlace(), row);
  const Result<RowPointer> at = opened.value()->Insert(values);
  if (!Expect("insert", at.status(), faults)) return;
  EXPECT_EQ(values, ByDefinition(*opened.value(), table, row));
  table.rows[at.value()] = row;
  ++table.last_number;
}

void RandomDatabase::Update(ModelTable& table) {
  const Result<Table*> opened = catalog_->OpenTable(table.name);
  ASSERT_TRUE(opened.ok()) << opened.error().description;
  const auto at =
      std::next(table.rows.begin(), static_cast<std::ptrdiff_t>(random_.Pick(table.rows.size())));
  const ModelRow made = MakeRow(table);
  ModelRow row = at->second;
  std::vector<ColumnChange> changes;
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (table.columns[i].auto_number || made[i] == row[i] || random_.Chance(2)) continue;
    // What others refer to stays a value.
    if (IsNull(made[i]) && model_.IsRelated(table.name, table.columns[i].name)) continue;
    row[i] = made[i];
    changes.push_back({opened.value()->PositionOf(table.columns[i].name).value(), made[i]});
  }
  DatabaseModel next = model_;
  const Faults faults = next.Update(table.name, at->first, row);
  if (Expect("update", opened.value()->Update(at->first, changes), faults)) {
    model_ = std::move(next);
  }
}

void RandomDatabase::Delete(ModelTable& table) {
  const Result<Table*> opened = catalog_->OpenTable(table.name);
  ASSERT_TRUE(opened.ok()) << opened.error().description;
  const auto at =
      std::next(table.rows.begin(), static_cast<std::ptrdiff_t>(random_.Pick(table.rows.size())));
  DatabaseModel next = model_;
  const Faults faults = next.Delete(table.name, at->first);
  if (Expect("delete", opened.value()->Delete(at->first), faults)) model_ = std::move(next);
}

}  // namespace zent::jet::testing
