#include <gtest/gtest.h>

#include "jet/catalog/Transaction.h"
#include "jet/format/JetErrors.h"
#include "jet/schema/Schema.h"
#include "jet/transfer/CopyFiles.h"
#include "jet/transfer/DatabaseChecks.h"
#include "jet/transfer/TableCopy.h"

namespace zent::jet::testing {
namespace {

/// A source and an empty target, which is in a transaction.
class TwoFiles {
 public:
  TwoFiles() {
    MakeSource(storage, "from.mdb");
    MakeEmpty(storage, "to.mdb");
    from = OpenCatalog(storage, "from.mdb");
    to = OpenCatalog(storage, "to.mdb");
    EXPECT_TRUE(to.pager->Begin().ok());
  }
  /// Commits, and opens the target anew.
  void Finish() {
    EXPECT_TRUE(to.pager->Commit().ok());
    to = {};
    to = OpenCatalog(storage, "to.mdb");
  }

  MemoryStorage storage;
  OpenedDatabase from;
  OpenedDatabase to;
};

TEST(CopyTable, CopiesFieldsPropertiesIndexesAndRows) {
  for (const std::size_t sort_bytes : {std::size_t{32} << 20U, std::size_t{100}}) {
    SCOPED_TRACE(sort_bytes);
    TwoFiles given;
    const Result<std::int64_t> rows = CopyTable(*given.from.catalog, *given.to.catalog,
                                                {.table = "things", .sort_bytes = sort_bytes});
    ASSERT_TRUE(rows.ok()) << rows.error().description;
    EXPECT_EQ(rows.value(), 49);
    given.Finish();
    const Result<Table*> copy = given.to.catalog->OpenTable("Things");
    ASSERT_TRUE(copy.ok());
    Table& source = *given.from.catalog->OpenTable("Things").value();
    ExpectSameTable(source, *copy.value());
    for (const std::string_view owner : {"", "Name"}) {
      const PropertySet* const set = copy.value()->properties().Find(owner);
      ASSERT_NE(set, nullptr);
      ASSERT_NE(set->Find("Description"), nullptr);
      EXPECT_EQ(
          PropertyValue(JetVersion::Jet4, *set->Find("Description")),
          PropertyValue(JetVersion::Jet4, *source.properties().Find(owner)->Find("Description")));
    }
    std::vector<std::string> indexes;
    for (const LogicalIndex& index : copy.value()->definition().logical_indexes) {
      EXPECT_NE(index.kind, IndexKind::Foreign) << "relationships stay behind";
      indexes.push_back(index.name);
    }
    EXPECT_EQ(indexes, (std::vector<std::string>{"ByDay", "ByName", "PrimaryKey"}));
  }
}

TEST(CopyTable, GivesAnotherNameOrNoRows) {
  struct Case {
    const char* what;
    bool same_file;
    TableCopy copy;
    const char* name;
    std::int64_t rows;
  };
  const Case cases[] = {
      {"another name", false, {.table = "Things", .new_name = "Copy"}, "Copy", 49},
      {"within the file", true, {.table = "Things", .new_name = "Copy"}, "Copy", 49},
      {"no rows", false, {.table = "Things", .rows = false}, "Things", 0},
      {"a hidden table", false, {.table = "Parts"}, "Parts", 10},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    TwoFiles given;
    if (row.same_file) {
      ASSERT_TRUE(given.from.pager->Begin().ok());
    }
    Catalog& target = row.same_file ? *given.from.catalog : *given.to.catalog;
    const Result<std::int64_t> rows = CopyTable(*given.from.catalog, target, row.copy);
    ASSERT_TRUE(rows.ok()) << rows.error().description;
    EXPECT_EQ(rows.value(), row.rows);
    const Result<Table*> copy = target.OpenTable(row.name);
    ASSERT_TRUE(copy.ok());
    ExpectSameTable(*given.from.catalog->OpenTable(row.copy.table).value(), *copy.value(),
                    row.copy.rows);
    EXPECT_EQ(copy.value()->store().RowCount().value_or(99), row.rows);
    if (!row.copy.rows) {
      EXPECT_EQ(copy.value()->store().LastAutoNumber().value_or(9), 0);
    }
  }
}

TEST(CopyTable, RefusesBeforeItTouchesAnything) {
  struct Case {
    const char* what;
    TableCopy copy;
    int number;
  };
  const Case cases[] = {
      {"no such table", {.table = "Other"}, kNoSuchTable},
      {"a table of that name is there", {.table = "Things"}, kTableExists},
      {"a wrong name", {.table = "Things", .new_name = "a.b"}, kInvalidName},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    TwoFiles given;
    ASSERT_TRUE(
        CopyTable(*given.from.catalog, *given.to.catalog, {.table = "Things", .rows = false}).ok());
    EXPECT_EQ(CopyTable(*given.from.catalog, *given.to.catalog, row.copy).number(), row.number);
    given.Finish();
    EXPECT_EQ(given.to.catalog->OpenTable("Things").value()->store().RowCount().value_or(9), 0U);
  }
}

}  // namespace
}  // namespace zent::jet::testing
