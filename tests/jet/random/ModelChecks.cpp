#include <gmock/gmock.h>

#include <algorithm>

#include "jet/random/RandomDatabase.h"
#include "jet/tools/Verify.h"

namespace zent::jet::testing {
namespace {

using ::testing::UnorderedElementsAreArray;

std::map<RowPointer, ModelRow> RowsIn(Table& table) {
  std::map<RowPointer, ModelRow> rows;
  RowScan scan(table.store().rows());
  std::vector<Value> values;
  for (;;) {
    const Result<bool> more = scan.Next();
    EXPECT_TRUE(more.ok());
    if (!more.value_or(false)) return rows;
    EXPECT_TRUE(table.store().Load(scan.bytes(), scan.page(), values).ok());
    ModelRow& row = rows[scan.at()];
    for (const std::size_t position : table.display_order()) row.push_back(values[position]);
  }
}

/// The same rows, wherever they lie.
bool AreSameRows(const std::map<RowPointer, ModelRow>& a, const std::map<RowPointer, ModelRow>& b) {
  return std::is_permutation(
      a.begin(), a.end(), b.begin(), b.end(),
      [](const auto& one, const auto& other) { return one.second == other.second; });
}

void ExpectTable(Table& table, const ModelTable& model, bool same_places) {
  std::vector<std::string> columns;
  for (const std::size_t position : table.display_order()) {
    columns.push_back(table.definition().columns[position].name);
  }
  std::vector<std::string> expected;
  for (const ModelColumn& column : model.columns) expected.push_back(column.name);
  EXPECT_EQ(columns, expected);
  std::vector<std::string> indexes;
  for (const LogicalIndex& index : table.definition().logical_indexes) {
    if (index.kind != IndexKind::Foreign) indexes.push_back(index.name);
  }
  expected.clear();
  for (const ModelIndex& index : model.indexes) expected.push_back(index.name);
  EXPECT_THAT(indexes, UnorderedElementsAreArray(expected));
  EXPECT_EQ(table.store().RowCount().value_or(0), model.rows.size());
  if (same_places) {
    EXPECT_TRUE(RowsIn(table) == model.rows);
  } else {
    EXPECT_TRUE(AreSameRows(RowsIn(table), model.rows));
  }
}

}  // namespace

void ExpectModel(Catalog& catalog, const DatabaseModel& model, bool same_places) {
  for (const ModelTable& table : model.tables) {
    SCOPED_TRACE(table.name);
    const Result<Table*> opened = catalog.OpenTable(table.name);
    ASSERT_TRUE(opened.ok()) << opened.error().description;
    ExpectTable(*opened.value(), table, same_places);
  }
  std::size_t own = 0;
  const std::vector<CatalogObject> objects = catalog.Tables().value_or({});
  for (const CatalogObject& object : objects) own += object.IsSystem() ? 0U : 1U;
  EXPECT_EQ(own, model.tables.size());
  const Result<std::vector<Relationship>> relations = catalog.Relationships();
  ASSERT_TRUE(relations.ok());
  std::vector<std::string> found;
  for (const Relationship& relation : relations.value()) {
    found.push_back(relation.name + " " + relation.table + " " + relation.columns[0].first + " " +
                    relation.referenced_table + " " + relation.columns[0].second);
  }
  std::vector<std::string> expected;
  for (const ModelRelation& relation : model.relations) {
    expected.push_back(relation.name + " " + relation.table + " " + relation.column + " " +
                       relation.referenced + " " + relation.referenced_column);
  }
  EXPECT_THAT(found, UnorderedElementsAreArray(expected));
}

std::vector<std::string> FaultsOfFile(Pager& pager) {
  std::vector<std::string> faults;
  const Result<VerifySummary> summary =
      VerifyDatabase(pager, [&](const std::string& line) { faults.push_back(line); });
  EXPECT_TRUE(summary.ok());
  return faults;
}

}  // namespace zent::jet::testing
