#include <gmock/gmock.h>

#include "jet/dao/DaoFile.h"
#include "jet/dao/Recordset.h"
#include "jet/format/JetErrors.h"

namespace zent::jet::testing {
namespace {

constexpr const char* kSources[] = {"People", "SELECT * FROM People"};

TEST(Recordset, MovesThroughItsRows) {
  for (const RecordsetType type :
       {RecordsetType::Table, RecordsetType::Dynaset, RecordsetType::Snapshot}) {
    SCOPED_TRACE(static_cast<int>(type));
    DaoFile given;
    const auto rows = given.Rows("People", type);
    EXPECT_EQ(rows->type(), type);
    EXPECT_FALSE(rows->AtBegin() || rows->AtEnd());
    EXPECT_EQ(TextIn(*rows, "Name"), "Ann");
    ASSERT_TRUE(rows->MovePrevious().ok());
    EXPECT_TRUE(rows->AtBegin());
    EXPECT_EQ(TextIn(*rows, "Name"), "error 3021");
    EXPECT_EQ(rows->MovePrevious().number(), kNoCurrentRecord);
    ASSERT_TRUE(rows->MoveNext().ok());
    EXPECT_EQ(DaoFile::NamesOf(*rows), "Ann Bob Cid");
    EXPECT_TRUE(rows->AtEnd());
    EXPECT_EQ(TextIn(*rows, "Name"), "error 3021");
    EXPECT_EQ(rows->MoveNext().number(), kNoCurrentRecord);
    ASSERT_TRUE(rows->MovePrevious().ok());
    EXPECT_EQ(TextIn(*rows, "Name"), "Cid");
    ASSERT_TRUE(rows->MovePrevious().ok());
    EXPECT_EQ(TextIn(*rows, "Name"), "Bob");
    ASSERT_TRUE(rows->MoveFirst().ok());
    EXPECT_EQ(TextIn(*rows, "Name"), "Ann");
    ASSERT_TRUE(rows->MoveLast().ok());
    EXPECT_EQ(TextIn(*rows, "Name"), "Cid");
    EXPECT_EQ(rows->RecordCount().value_or(0), 3);
  }
}

TEST(Recordset, ATableWhoseNameBeginsLikeAStatementIsThatTable) {
  DaoFile given;
  given.Run("CREATE TABLE [Select List] (A LONG)");
  given.Run("INSERT INTO [Select List] VALUES (7)");
  for (const RecordsetType type :
       {RecordsetType::Table, RecordsetType::Dynaset, RecordsetType::Snapshot}) {
    SCOPED_TRACE(static_cast<int>(type));
    const auto rows = given.Rows("select list", type);
    ASSERT_NE(rows, nullptr);
    EXPECT_EQ(rows->type(), type);
    EXPECT_EQ(rows->Get("A").value(), Value(std::int32_t{7}));
  }
  EXPECT_EQ(given.Rows("SELECT Name FROM People")->type(), RecordsetType::Dynaset);
  EXPECT_FALSE(given.db->OpenRecordset("Select Nothing").ok());
}

TEST(Recordset, IsAtBothEndsWhenThereAreNoRows) {
  for (const char* const source :
       {"SELECT * FROM People WHERE 1=2", "SELECT Count(*) FROM People WHERE 1=2 GROUP BY Age"}) {
    SCOPED_TRACE(source);
    DaoFile given;
    const auto rows = given.Rows(source);
    EXPECT_TRUE(rows->AtBegin() && rows->AtEnd());
    EXPECT_EQ(rows->RecordCount().value_or(9), 0);
    EXPECT_EQ(rows->Get(std::size_t{0}).number(), kNoCurrentRecord);
    EXPECT_EQ(rows->Edit().number(), kNoCurrentRecord);
    EXPECT_EQ(rows->MoveNext().number(), kNoCurrentRecord);
    EXPECT_EQ(rows->MovePrevious().number(), kNoCurrentRecord);
    EXPECT_TRUE(rows->MoveFirst().ok());
    EXPECT_TRUE(rows->AtEnd());
  }
}

TEST(Recordset, TellsItsFields) {
  DaoFile given;
  const auto rows = given.Rows("SELECT Name AS Who, Age, Age+1 AS Older FROM People");
  ASSERT_EQ(rows->Fields().count(), 3U);
  EXPECT_EQ(rows->Fields()[0].name, "Who");
  EXPECT_EQ(rows->Fields()[0].source_field, "Name");
  EXPECT_EQ(rows->Fields()[0].type, DataType::ShortText);
  EXPECT_EQ(rows->Fields()[0].size, 20);
  EXPECT_EQ(rows->Fields()[1].type, DataType::Integer);
  EXPECT_EQ(rows->Fields()[2].source_table, "");
  EXPECT_TRUE(rows->Fields().Has("WHO"));
  EXPECT_EQ(rows->Fields().Find("Name").number(), kItemNotFound);
  EXPECT_EQ(rows->Get("Name").number(), kItemNotFound);
  EXPECT_EQ(rows->Get(std::size_t{3}).number(), kItemNotFound);
  EXPECT_EQ(TextIn(*rows, "who"), "Ann");
}

TEST(Recordset, EditsTheCurrentRow) {
  for (const char* const source : kSources) {
    SCOPED_TRACE(source);
    DaoFile given;
    const auto rows = given.Rows(source);
    EXPECT_EQ(rows->Update().number(), kUpdateWithoutEdit);
    EXPECT_EQ(rows->CancelUpdate().number(), kUpdateWithoutEdit);
    EXPECT_EQ(rows->Put("Name", Text("X")).number(), kUpdateWithoutEdit);

    ASSERT_TRUE(rows->MoveNext().ok());
    ASSERT_TRUE(rows->Edit().ok());
    EXPECT_EQ(rows->edit_mode(), EditMode::InProgress);
    ASSERT_TRUE(rows->Put("Name", Text("Ben")).ok());
    ASSERT_TRUE(rows->Put("Age", Text("41")).ok());
    EXPECT_EQ(TextIn(*rows, "Name"), "Ben");
    EXPECT_EQ(given.Names(), "Ann Bob Cid");
    ASSERT_TRUE(rows->Update().ok());
    EXPECT_EQ(rows->edit_mode(), EditMode::None);
    EXPECT_EQ(TextIn(*rows, "Name"), "Ben");
    EXPECT_EQ(rows->Get("Age").value(), Value(std::int16_t{41}));
    EXPECT_EQ(given.Names(), "Ann Ben Cid");

    ASSERT_TRUE(rows->Edit().ok());
    ASSERT_TRUE(rows->Put("Name", Text("Bob")).ok());
    ASSERT_TRUE(rows->CancelUpdate().ok());
    EXPECT_EQ(TextIn(*rows, "Name"), "Ben");
    ASSERT_TRUE(rows->Edit().ok());
    ASSERT_TRUE(rows->Put("Name", Text("Bob")).ok());
    ASSERT_TRUE(rows->MoveNext().ok());
    EXPECT_EQ(given.Names(), "Ann Ben Cid") << "a move gives the change up";
  }
}

TEST(Recordset, RefusesWhatTheTableDoes) {
  struct Case {
    const char* what;
    const char* field;
    Value value;
    int put;
    int update;
  };
  const Case cases[] = {
      {"too long", "Name", Text(21, 'x'), kFieldTooSmall, 0},
      {"not a number", "Age", Text("old"), kDataTypeConversion, 0},
      {"too large a number", "Age", std::int32_t{70000}, kNumericOverflow, 0},
      {"no such field", "Size", Null(), kItemNotFound, 0},
      {"null where a value is required", "Name", Null(), 0, kValueRequired},
      {"against the rule", "Age", std::int32_t{200}, 0, kValidationFailed},
      {"a key that is there", "Id", std::int32_t{1}, 0, kDuplicateKey},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    DaoFile given;
    const auto rows = given.Rows("People");
    ASSERT_TRUE(rows->MoveLast().ok());
    ASSERT_TRUE(rows->Edit().ok());
    ASSERT_TRUE(rows->Put("Note", Text("kept")).ok());
    EXPECT_EQ(rows->Put(row.field, row.value).number(), row.put);
    if (row.update != 0) {
      EXPECT_EQ(rows->Update().number(), row.update);
      EXPECT_EQ(rows->edit_mode(), EditMode::InProgress);
      EXPECT_EQ(TextIn(*rows, "Note"), "kept");
      ASSERT_TRUE(rows->CancelUpdate().ok());
      EXPECT_EQ(TextIn(*rows, "Note"), "null");
    }
    EXPECT_EQ(given.Names(), "Ann Bob Cid");
  }
}

TEST(Recordset, AddsRowsWithDefaultsAndNumbers) {
  for (const char* const source : kSources) {
    SCOPED_TRACE(source);
    DaoFile given;
    const auto rows = given.Rows(source);
    ASSERT_TRUE(rows->MoveNext().ok());
    ASSERT_TRUE(rows->AddNew().ok());
    EXPECT_EQ(rows->edit_mode(), EditMode::Add);
    EXPECT_EQ(rows->Get("Age").value(), Value(std::int16_t{18}));
    EXPECT_EQ(rows->Get("Member").value(), Value(false));
    EXPECT_EQ(rows->Get("Id").value(), Value(std::int32_t{4}));
    EXPECT_EQ(rows->Update().number(), kValueRequired);
    ASSERT_TRUE(rows->Put("Name", Text("Dan")).ok());
    ASSERT_TRUE(rows->Put("Note", Text("")).ok());
    ASSERT_TRUE(rows->Update().ok());
    EXPECT_EQ(TextIn(*rows, "Name"), "Bob") << "the new row is not the current one";
    ASSERT_TRUE(rows->MoveTo(rows->last_modified()).ok());
    EXPECT_EQ(TextIn(*rows, "Name"), "Dan");
    EXPECT_EQ(rows->Get("Id").value(), Value(std::int32_t{4}));
    EXPECT_EQ(TextIn(*rows, "Note"), "null") << "an empty text where zero length is not allowed";
    ASSERT_TRUE(rows->MoveFirst().ok());
    EXPECT_EQ(DaoFile::NamesOf(*rows), "Ann Bob Cid Dan");
  }
}

TEST(Recordset, DeletesTheCurrentRow) {
  for (const char* const source : kSources) {
    SCOPED_TRACE(source);
    DaoFile given;
    const auto rows = given.Rows(source);
    ASSERT_TRUE(rows->MoveNext().ok());
    ASSERT_TRUE(rows->Delete().ok());
    EXPECT_EQ(TextIn(*rows, "Name"), "error 3021");
    EXPECT_EQ(rows->Delete().number(), kNoCurrentRecord);
    EXPECT_EQ(rows->Edit().number(), kNoCurrentRecord);
    ASSERT_TRUE(rows->MoveNext().ok());
    EXPECT_EQ(TextIn(*rows, "Name"), "Cid");
    ASSERT_TRUE(rows->MovePrevious().ok());
    EXPECT_EQ(TextIn(*rows, "Name"), "Ann");
    EXPECT_EQ(given.Names(), "Ann Cid");
  }
}

TEST(Recordset, SaysThatAnotherHasDeletedTheRow) {
  DaoFile given;
  const auto dynaset = given.Rows("SELECT * FROM People");
  const auto table = given.Rows("People");
  ASSERT_TRUE(dynaset->MoveNext().ok());
  given.Run("DELETE FROM People WHERE Name = 'Bob'");
  EXPECT_EQ(TextIn(*dynaset, "Name"), "error 3167");
  EXPECT_EQ(dynaset->Edit().number(), kRecordDeleted);
  EXPECT_EQ(dynaset->Delete().number(), kRecordDeleted);
  ASSERT_TRUE(dynaset->MoveNext().ok());
  EXPECT_EQ(TextIn(*dynaset, "Name"), "Cid");
  EXPECT_EQ(DaoFile::NamesOf(*table), "Ann Cid") << "a table passes over it";
}

TEST(Recordset, CountsTheRowsThatWereVisited) {
  for (const char* const source : kSources) {
    SCOPED_TRACE(source);
    DaoFile given;
    const auto rows = given.Rows(source, RecordsetType::Dynaset);
    EXPECT_EQ(rows->RecordCount().value_or(0), 1);
    ASSERT_TRUE(rows->MoveNext().ok());
    EXPECT_EQ(rows->RecordCount().value_or(0), 2);
    ASSERT_TRUE(rows->Delete().ok());
    EXPECT_EQ(rows->RecordCount().value_or(0), 1);
    ASSERT_TRUE(rows->MoveLast().ok());
    EXPECT_EQ(rows->RecordCount().value_or(0), 2);
    ASSERT_TRUE(rows->MoveFirst().ok());
    EXPECT_EQ(rows->RecordCount().value_or(0), 2) << "it begins anew, but they were visited";
  }
}

TEST(Recordset, PassesOverTheRowsThatItDeleted) {
  DaoFile given;
  const auto rows = given.Rows("SELECT * FROM People ORDER BY Id");
  const Recordset::Bookmark ann = rows->bookmark().value();
  ASSERT_TRUE(rows->Delete().ok());
  EXPECT_EQ(rows->MoveTo(ann).number(), kInvalidBookmark);
  ASSERT_TRUE(rows->MoveNext().ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Bob");
  ASSERT_TRUE(rows->MovePrevious().ok());
  EXPECT_TRUE(rows->AtBegin());
  ASSERT_TRUE(rows->MoveLast().ok());
  ASSERT_TRUE(rows->Delete().ok());
  ASSERT_TRUE(rows->MovePrevious().ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Bob");
  ASSERT_TRUE(rows->MoveFirst().ok());
  EXPECT_EQ(DaoFile::NamesOf(*rows), "Bob");
}

// 4,900 rows of 64 KB each.
TEST(Recordset, KeepsNoMoreOfACopyThanThereIsRoomFor) {
  constexpr int kRows = 70;
  DaoFile given;
  given.Run("CREATE TABLE Notes (Note MEMO)");
  const auto notes = given.Rows("Notes");
  for (int i = 0; i < kRows; ++i) {
    ASSERT_TRUE(notes->AddNew().ok());
    ASSERT_TRUE(notes->Put("Note", Text(65536, 'n')).ok());
    ASSERT_TRUE(notes->Update().ok());
  }
  const auto copy = given.db->OpenRecordset("SELECT a.Note FROM Notes AS a, Notes AS b");
  EXPECT_EQ(copy.number(), kDatabaseTooLarge);
}

TEST(Recordset, ChangesNoCopies) {
  for (const char* const source :
       {"SELECT DISTINCT Age FROM People", "SELECT Count(*) AS Age FROM People",
        "SELECT Age+1 AS Age FROM People"}) {
    SCOPED_TRACE(source);
    DaoFile given;
    const auto rows = given.Rows(source);
    EXPECT_EQ(rows->type(), RecordsetType::Snapshot);
    EXPECT_FALSE(rows->updatable());
    EXPECT_EQ(rows->Edit().number(), kReadOnly);
    EXPECT_EQ(rows->AddNew().number(), kReadOnly);
    EXPECT_EQ(rows->Delete().number(), kReadOnly);
  }
}

TEST(Recordset, CannotBeOpened) {
  struct Case {
    const char* what;
    const char* source;
    RecordsetType type;
    int number;
  };
  constexpr Case kCases[] = {
      {"no such table", "Peple", RecordsetType::Default, kNoSuchTable},
      {"no such table in a query", "SELECT * FROM Peple", RecordsetType::Default, kNoSuchTable},
      {"no such field", "SELECT Size FROM People", RecordsetType::Default, kTooFewParameters},
      {"wrong syntax", "SELECT * FROM People WHERE Id = ", RecordsetType::Default, kSyntaxError},
      {"a query as a table", "SELECT * FROM People", RecordsetType::Table, kNotSupportedHere},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.what);
    DaoFile given;
    EXPECT_EQ(given.db->OpenRecordset(row.source, row.type).number(), row.number);
  }
}

}  // namespace
}  // namespace zent::jet::testing
