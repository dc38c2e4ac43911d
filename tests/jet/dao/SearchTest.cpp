#include <gmock/gmock.h>

#include "jet/dao/DaoFile.h"
#include "jet/format/JetErrors.h"

namespace zent::jet::testing {
namespace {

TEST(Seek, FindsRowsByTheFieldsOfAnIndex) {
  struct Case {
    const char* what;
    const char* index;
    const char* comparison;
    std::vector<Value> keys;
    const char* name;  ///< of the row; empty: none
  };
  const std::int32_t forty = 40;
  const std::int32_t thirty = 30;
  const Case cases[] = {
      {"equal", "PrimaryKey", "=", {std::int32_t{2}}, "Bob"},
      {"equal, none", "PrimaryKey", "=", {std::int32_t{9}}, ""},
      {"at least", "PrimaryKey", ">=", {std::int32_t{2}}, "Bob"},
      {"above", "PrimaryKey", ">", {std::int32_t{2}}, "Cid"},
      {"above the last", "PrimaryKey", ">", {std::int32_t{3}}, ""},
      {"at most", "PrimaryKey", "<=", {std::int32_t{2}}, "Bob"},
      {"at most, above all", "PrimaryKey", "<=", {std::int32_t{9}}, "Cid"},
      {"below", "PrimaryKey", "<", {std::int32_t{2}}, "Ann"},
      {"below the first", "PrimaryKey", "<", {std::int32_t{1}}, ""},
      {"all fields of two", "ByAge", "=", {forty, Text("Cid")}, "Cid"},
      {"in any case", "byage", "=", {forty, Text("CID")}, "Cid"},
      {"the first field of two", "ByAge", "=", {forty}, "Bob"},
      {"behind all of the first field, which descends", "ByAge", ">", {forty}, "Ann"},
      {"the last of the first field", "ByAge", "<=", {forty}, "Cid"},
      {"a text longer than its field", "ByAge", "=", {forty, Text(21, 'B')}, ""},
      {"at least such a text", "ByAge", ">=", {forty, Text("Bob") + Text(20, 'b')}, "Cid"},
      {"a text that is a number", "ByAge", "=", {Text("30")}, "Ann"},
      {"before a value of the first field", "ByAge", "<", {thirty}, "Cid"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    DaoFile given;
    const auto rows = given.Rows("People");
    ASSERT_TRUE(rows->SetIndex(row.index).ok());
    const Status sought = rows->Seek(row.comparison, row.keys);
    ASSERT_TRUE(sought.ok()) << sought.error().description;
    EXPECT_EQ(rows->NoMatch(), *row.name == '\0');
    EXPECT_EQ(TextIn(*rows, "Name"), *row.name == '\0' ? "error 3021" : row.name);
  }
}

TEST(Seek, WantsATableAndAnIndex) {
  DaoFile given;
  const std::vector<Value> key = {std::int32_t{1}};
  const auto rows = given.Rows("People");
  EXPECT_EQ(rows->Seek("=", key).number(), kNoCurrentIndex);
  EXPECT_EQ(rows->SetIndex("Other").number(), kNotAnIndex);
  ASSERT_TRUE(rows->SetIndex("PrimaryKey").ok());
  EXPECT_EQ(rows->Seek("<>", key).number(), kInvalidArgument);
  EXPECT_EQ(rows->Seek("=", {}).number(), kInvalidArgument);
  const std::vector<Value> text = {Text("x")};
  EXPECT_EQ(rows->Seek("=", text).number(), kDataTypeConversion);
  const auto query = given.Rows("SELECT * FROM People");
  EXPECT_EQ(query->SetIndex("PrimaryKey").number(), kNotSupportedHere);
  EXPECT_EQ(query->Seek("=", key).number(), kNotSupportedHere);
}

TEST(SetIndex, OrdersTheRows) {
  DaoFile given;
  const auto rows = given.Rows("People");
  ASSERT_TRUE(rows->SetIndex("ByAge").ok());
  EXPECT_EQ(DaoFile::NamesOf(*rows), "Bob Cid Ann");
  ASSERT_TRUE(rows->MoveLast().ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Ann");
  ASSERT_TRUE(rows->MovePrevious().ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Cid");
  // A change of the key moves the row, which stays the current one.
  ASSERT_TRUE(rows->Edit().ok());
  ASSERT_TRUE(rows->Put("Age", std::int32_t{10}).ok());
  ASSERT_TRUE(rows->Update().ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Cid");
  ASSERT_TRUE(rows->MovePrevious().ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Ann");
  ASSERT_TRUE(rows->Delete().ok());
  ASSERT_TRUE(rows->MoveNext().ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Cid");
  ASSERT_TRUE(rows->SetIndex("").ok());
  EXPECT_EQ(DaoFile::NamesOf(*rows), "Bob Cid");
}

TEST(FindFirst, GoesToTheRowThatTakesTheCriteria) {
  DaoFile given;
  const auto rows = given.Rows("SELECT * FROM People ORDER BY Id");
  ASSERT_TRUE(rows->FindFirst("Age = 40").ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Bob");
  ASSERT_TRUE(rows->FindNext("Age = 40").ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Cid");
  EXPECT_FALSE(rows->NoMatch());
  ASSERT_TRUE(rows->FindNext("Age = 40").ok());
  EXPECT_TRUE(rows->NoMatch());
  EXPECT_EQ(TextIn(*rows, "Name"), "Cid") << "the row stays";
  ASSERT_TRUE(rows->FindFirst("Name LIKE 'A*'").ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Ann");
  EXPECT_FALSE(rows->NoMatch());
  EXPECT_EQ(rows->FindFirst("Size = 1").number(), kTooFewParameters);
  EXPECT_EQ(rows->FindFirst("Age = ").number(), kSyntaxError);
  EXPECT_EQ(given.Rows("People")->FindFirst("Age = 40").number(), kNotSupportedHere);
}

TEST(Bookmark, LeadsBackToItsRow) {
  for (const char* const source : {"People", "SELECT * FROM People"}) {
    SCOPED_TRACE(source);
    DaoFile given;
    const auto rows = given.Rows(source);
    ASSERT_TRUE(rows->MoveLast().ok());
    const Result<Recordset::Bookmark> mark = rows->bookmark();
    ASSERT_TRUE(mark.ok());
    ASSERT_TRUE(rows->MoveFirst().ok());
    ASSERT_TRUE(rows->MoveTo(mark.value()).ok());
    EXPECT_EQ(TextIn(*rows, "Name"), "Cid");
    ASSERT_TRUE(rows->MovePrevious().ok());
    EXPECT_EQ(TextIn(*rows, "Name"), "Bob");
    EXPECT_EQ(rows->MoveTo({.page = 1, .row = 7}).number(), kInvalidBookmark);
    ASSERT_TRUE(rows->MoveFirst().ok());
    ASSERT_TRUE(rows->MovePrevious().ok());
    EXPECT_EQ(rows->bookmark().number(), kNoCurrentRecord);
  }
}

}  // namespace
}  // namespace zent::jet::testing
