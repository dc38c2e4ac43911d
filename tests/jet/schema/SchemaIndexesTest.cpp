#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "jet/format/JetErrors.h"
#include "jet/schema/EntrySorter.h"
#include "jet/schema/SchemaChecks.h"

namespace zent::jet::testing {
namespace {

/// A, text B and yes/no C of `count` rows, in no order; every tenth has no B.
void FillTable(SchemaFile& given, int count) {
  ExpectNumber(given.schema().CreateTable({.name = "T",
                                           .columns = {{.name = "A"},
                                                       {.name = "B", .type = ColumnType::Text},
                                                       {.name = "C", .type = ColumnType::Bool},
                                                       {.name = "M", .type = ColumnType::Memo}}}),
               0);
  std::vector<std::vector<Value>> rows;
  for (int i = 0; i < count; ++i) {
    const int number = (i * 7919) % count;
    rows.push_back({number, i % 10 == 0 ? Value() : Value(Text("text " + std::to_string(number))),
                    i % 3 == 0, Text("m")});
  }
  ExpectNumber(given.Insert("T", rows), 0);
}

struct IndexCase {
  const char* what;
  NewIndex index;
  int number;
};

std::vector<IndexCase> IndexCases() {
  return {
      {"unique", {.name = "I", .columns = {{.name = "A"}}, .unique = true}, 0},
      {"primary", {.name = "I", .columns = {{.name = "A"}}, .primary = true}, 0},
      {"descending, with nulls", {.name = "I", .columns = {{.name = "B", .descending = true}}}, 0},
      {"nulls ignored", {.name = "I", .columns = {{.name = "B"}}, .ignore_nulls = true}, 0},
      {"unique but for nulls", {.name = "I", .columns = {{.name = "B"}}, .unique = true}, 0},
      {"two columns",
       {.name = "I", .columns = {{.name = "C"}, {.name = "A", .descending = true}}, .unique = true},
       0},
      {"a memo", {.name = "I", .columns = {{.name = "M"}}}, 0},
      {"duplicates", {.name = "I", .columns = {{.name = "C"}}, .unique = true}, kDuplicateKey},
      {"nulls in a required one",
       {.name = "I", .columns = {{.name = "B"}}, .required = true},
       kNullInKey},
      {"nulls in a primary key",
       {.name = "I", .columns = {{.name = "B"}}, .primary = true},
       kNullInKey},
      {"no such column", {.name = "I", .columns = {{.name = "X"}}}, kItemNotFound},
      {"a bad name", {.name = ".rB", .columns = {{.name = "A"}}}, kInvalidName},
  };
}

TEST(CreateIndex, FillsItFromTheRows) {
  for (const IndexCase& row : IndexCases()) {
    SCOPED_TRACE(row.what);
    SchemaFile given;
    FillTable(given, 1000);
    const std::vector<PageNumber> pages = given.file().UsedPages();
    ExpectNumber(given.schema().CreateIndex("T", row.index), row.number);
    ExpectRightDatabase(given.file());
    EXPECT_EQ(given.Definition("T").real_indexes.size(), row.number == 0 ? 1U : 0U);
    if (row.number != 0) {
      EXPECT_EQ(given.file().UsedPages(), pages);
      continue;
    }
    ExpectNumber(given.Insert("T", {{5000, Text("later"), true}}), 0);
    ExpectRightDatabase(given.file());
    ExpectNumber(given.schema().DropIndex("T", "i"), 0);
    ExpectRightDatabase(given.file());
  }
}

TEST(CreateIndex, RefusesASecondOfItsNameOrKind) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(People()), 0);
  ExpectNumber(
      given.schema().CreateIndex("People", {.name = "BYNAME", .columns = {{.name = "Born"}}}),
      kIndexExists);
  ExpectNumber(given.schema().CreateIndex(
                   "People", {.name = "P", .columns = {{.name = "Born"}}, .primary = true}),
               kPrimaryKeyExists);
  ExpectNumber(given.schema().DropIndex("People", "None"), kItemNotFound);
  ExpectNumber(given.schema().DropIndex("People", "PrimaryKey"), 0);
  ExpectNumber(given.schema().CreateIndex(
                   "People", {.name = "P", .columns = {{.name = "Born"}}, .primary = true}),
               0);
  ExpectRightDatabase(given.file());
}

TEST(EntrySorter, GivesAllEntriesInOrderWhateverItsBudget) {
  for (const std::size_t budget : {1U, 200U, 3000U, 1U << 20U}) {
    SCOPED_TRACE(budget);
    std::mt19937 random(7);
    std::vector<std::pair<std::string, RowPointer>> entries;
    for (PageNumber i = 0; i < 500; ++i) {
      entries.emplace_back(std::to_string(random() % 50), RowPointer{.page = i, .row = 1});
    }
    EntrySorter sorter(budget);
    std::vector<std::pair<std::string, RowPointer>> sorted;
    int passes = 0;
    do {
      for (const auto& [key, row] : entries) sorter.Add(key, row);
      sorter.Sort();
      for (std::size_t i = 0; i < sorter.count(); ++i)
        sorted.emplace_back(sorter.key(i), sorter.row(i));
      ++passes;
    } while (sorter.NextPass());
    std::sort(entries.begin(), entries.end());
    EXPECT_EQ(sorted, entries);
    EXPECT_EQ(passes == 1, budget > 100000);
  }
}

}  // namespace
}  // namespace zent::jet::testing
