#include "odbc/OdbcRecordset.h"
#include "odbc/servers/ServerTest.h"

namespace zent::odbc {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Recordsets : public ServerTest {
 protected:
  std::unique_ptr<OdbcRecordset> Open(std::string_view sql) {
    auto opened = OdbcRecordset::Open(server(), sql);
    if (opened.ok()) return std::move(opened.value());
    ADD_FAILURE() << opened.error().description;
    return nullptr;
  }

  /// A table of three rows, with a key or without.
  void MakePeople(const std::string& key) {
    MakeTable("People", "(id INT " + key +
                            ", name VARCHAR(20), \"two words\" VARCHAR(20), born DATETIME(3), "
                            "pay DECIMAL(10,2), share DOUBLE, memo LONGTEXT)");
    Run("INSERT INTO People VALUES (1, 'Ann', 'x', '2001-02-03 04:05:06.789', 1.50, 0.1, 'm1'), "
        "(2, 'Bob', NULL, NULL, NULL, NULL, NULL), (3, 'Cid', 'z', NULL, 3, 0.3, 'm3')");
  }
  std::string Value(OdbcRecordset& rows, std::string_view column) {
    const std::optional<std::size_t> at = rows.Find(column);
    if (!at) return "no such column";
    const Result<OdbcValue> value = rows.Value(*at);
    return value.ok() ? ValueText(value.value()) : "error: " + value.error().description;
  }
  void Set(OdbcRecordset& rows, std::string_view column, OdbcValue value) {
    EXPECT_TRUE(rows.Set(rows.Find(column).value_or(99), std::move(value)).ok()) << column;
  }
};

TEST_P(Recordsets, WalkFromTheFirstRowToTheLast) {
  MakePeople("PRIMARY KEY");
  const auto rows = Open("SELECT * FROM People ORDER BY id");
  std::vector<std::string> names;
  while (!rows->AtEnd()) {
    names.push_back(Value(*rows, "NAME"));
    ASSERT_TRUE(rows->MoveNext().ok());
  }
  EXPECT_THAT(names, ElementsAre("Ann", "Bob", "Cid"));
  EXPECT_EQ(rows->MoveNext().number(), kNoCurrentRecord);
  EXPECT_EQ(rows->Value(0).number(), kNoCurrentRecord);
  ASSERT_TRUE(rows->MoveFirst().ok());
  EXPECT_EQ(Value(*rows, "name"), "Ann");
  EXPECT_EQ(rows->Find("nothing"), std::nullopt);
  EXPECT_EQ(rows->Value(7).number(), kItemNotFound);
}

TEST_P(Recordsets, OfNoRowsAreAtTheirEndAtOnce) {
  MakePeople("PRIMARY KEY");
  const auto rows = Open("SELECT * FROM People WHERE id = 9");
  EXPECT_TRUE(rows->AtEnd());
  EXPECT_EQ(rows->Edit().number(), kNoCurrentRecord);
  EXPECT_EQ(rows->Delete().number(), kNoCurrentRecord);
}

constexpr const char* kKeys[] = {"PRIMARY KEY", ""};

TEST_P(Recordsets, SaveAChangeOfTheRowAlone) {
  for (const char* key : kKeys) {
    SCOPED_TRACE(key);
    MakePeople(key);
    const auto rows = Open("SELECT * FROM People ORDER BY id");
    ASSERT_TRUE(rows->Edit().ok());
    Set(*rows, "name", std::string("Änn 😀"));
    Set(*rows, "two words", OdbcValue());
    Set(*rows, "born", DateTime{1999, 12, 31, 23, 59, 59, 0});
    Set(*rows, "pay", Decimal{"99.99"});
    Set(*rows, "share", 0.25);
    Set(*rows, "memo", std::string("new"));
    EXPECT_EQ(Value(*rows, "name"), "Änn 😀");
    const Status saved = rows->Update();
    ASSERT_TRUE(saved.ok()) << saved.error().description;
    EXPECT_EQ(Value(*rows, "name"), "Änn 😀");
    ASSERT_TRUE(rows->MoveNext().ok());
    EXPECT_EQ(Value(*rows, "name"), "Bob");
    EXPECT_THAT(Rows("SELECT * FROM People ORDER BY id"),
                ElementsAre("1|Änn 😀|null|1999-12-31 23:59:59.000000|99.99|0.25|new",
                            "2|Bob|null|null|null|null|null", "3|Cid|z|null|3.00|0.3|m3"));
  }
}

TEST_P(Recordsets, ChangeEveryRowOnTheWay) {
  for (const char* key : kKeys) {
    SCOPED_TRACE(key);
    MakePeople(key);
    const auto rows = Open("SELECT * FROM People");
    int met = 0;
    while (!rows->AtEnd()) {
      ASSERT_TRUE(rows->Edit().ok());
      Set(*rows, "name", std::string("n") + Value(*rows, "id"));
      EXPECT_TRUE(rows->Update().ok());
      ASSERT_TRUE(rows->Edit().ok());
      Set(*rows, "two words", std::string("twice"));
      EXPECT_TRUE(rows->Update().ok());
      ++met;
      ASSERT_TRUE(rows->MoveNext().ok());
    }
    EXPECT_EQ(met, 3);
    EXPECT_THAT(Rows("SELECT name, \"two words\" FROM People ORDER BY id"),
                ElementsAre("n1|twice", "n2|twice", "n3|twice"));
  }
}

TEST_P(Recordsets, DeleteTheRowAlone) {
  for (const char* key : kKeys) {
    SCOPED_TRACE(key);
    MakePeople(key);
    const auto rows = Open("SELECT * FROM People ORDER BY id");
    ASSERT_TRUE(rows->MoveNext().ok());
    ASSERT_TRUE(rows->Delete().ok());
    EXPECT_EQ(rows->Value(0).number(), kNoCurrentRecord);
    EXPECT_EQ(rows->Delete().number(), kNoCurrentRecord);
    ASSERT_TRUE(rows->MoveNext().ok());
    EXPECT_EQ(Value(*rows, "name"), "Cid");
    EXPECT_THAT(Rows("SELECT id FROM People ORDER BY id"), ElementsAre("1", "3"));
  }
}

TEST_P(Recordsets, AddARow) {
  MakePeople("PRIMARY KEY");
  const auto rows = Open("SELECT * FROM People WHERE id = 1");
  ASSERT_TRUE(rows->AddNew().ok());
  EXPECT_EQ(Value(*rows, "name"), "null");
  Set(*rows, "id", std::int64_t{4});
  Set(*rows, "two words", std::string("it's"));
  ASSERT_TRUE(rows->Update().ok());
  EXPECT_EQ(Value(*rows, "name"), "Ann");
  EXPECT_THAT(Rows("SELECT id, name, \"two words\" FROM People WHERE id = 4"),
              ElementsAre("4|null|it's"));
  ASSERT_TRUE(rows->AddNew().ok());
  EXPECT_EQ(rows->Update().number(), kReadOnly);
  ASSERT_TRUE(rows->AddNew().ok());
  Set(*rows, "id", std::int64_t{4});
  EXPECT_EQ(rows->Update().number(), 1062);
}

TEST_P(Recordsets, NeverSaveOverAnothersChange) {
  for (const char* key : kKeys) {
    SCOPED_TRACE(key);
    MakePeople(key);
    const auto rows = Open("SELECT * FROM People WHERE id = 1");
    Run("UPDATE People SET name = 'Other' WHERE id = 1");
    ASSERT_TRUE(rows->Edit().ok());
    Set(*rows, "name", std::string("Mine"));
    const Status saved = rows->Update();
    EXPECT_EQ(saved.number(), kWriteConflict);
    EXPECT_EQ(rows->Update().number(), kUpdateWithoutEdit);
    EXPECT_FALSE(server().InTransaction());
    EXPECT_THAT(Rows("SELECT name FROM People WHERE id = 1"), ElementsAre("Other"));
    Run("DELETE FROM People WHERE id = 1");
    EXPECT_EQ(rows->Delete().number(), kWriteConflict);
  }
}

TEST_P(Recordsets, ChangeNoneOfRowsThatAreAlike) {
  MakeTable("Alike", "(a VARCHAR(10), b INT)");
  Run("INSERT INTO Alike VALUES ('same', 1), ('same', 1)");
  const auto rows = Open("SELECT * FROM Alike");
  ASSERT_TRUE(rows->Edit().ok());
  Set(*rows, "a", std::string("new"));
  const Status saved = rows->Update();
  EXPECT_EQ(saved.number(), kReadOnly);
  EXPECT_THAT(saved.error().description, HasSubstr("several rows are alike"));
  EXPECT_EQ(rows->Delete().number(), kReadOnly);
  EXPECT_THAT(Rows("SELECT * FROM Alike"), ElementsAre("same|1", "same|1"));
}

TEST_P(Recordsets, RefuseRowsThatNothingTellsApart) {
  MakeTable("OnlyMemo", "(memo LONGTEXT)");
  Run("INSERT INTO OnlyMemo VALUES ('a')");
  const auto rows = Open("SELECT * FROM OnlyMemo");
  EXPECT_EQ(rows->Delete().number(), kReadOnly);
  EXPECT_THAT(Rows("SELECT * FROM OnlyMemo"), ElementsAre("a"));
}

TEST_P(Recordsets, SaveNothingWhenNothingIsNew) {
  MakePeople("PRIMARY KEY");
  const auto rows = Open("SELECT * FROM People WHERE id = 1");
  ASSERT_TRUE(rows->Edit().ok());
  EXPECT_TRUE(rows->Update().ok());
  ASSERT_TRUE(rows->Edit().ok());
  Set(*rows, "name", std::string("Ann"));
  EXPECT_TRUE(rows->Update().ok());
  // A value that the server stores as the one that was there.
  ASSERT_TRUE(rows->Edit().ok());
  Set(*rows, "pay", Decimal{"1.5"});
  EXPECT_TRUE(rows->Update().ok());
}

TEST_P(Recordsets, GiveUpAChangeThatIsNotSaved) {
  MakePeople("PRIMARY KEY");
  const auto rows = Open("SELECT * FROM People ORDER BY id");
  EXPECT_EQ(rows->Set(0, std::int64_t{1}).number(), kUpdateWithoutEdit);
  ASSERT_TRUE(rows->Edit().ok());
  Set(*rows, "name", std::string("Never"));
  rows->CancelUpdate();
  EXPECT_EQ(Value(*rows, "name"), "Ann");
  ASSERT_TRUE(rows->Edit().ok());
  EXPECT_EQ(rows->Set(99, OdbcValue()).number(), kItemNotFound);
  Set(*rows, "name", std::string("Never"));
  ASSERT_TRUE(rows->MoveNext().ok());
  EXPECT_THAT(Rows("SELECT name FROM People WHERE name = 'Never'"), IsEmpty());
}

TEST_P(Recordsets, OfOtherStatementsAreReadOnly) {
  MakePeople("PRIMARY KEY");
  const auto rows = Open("SELECT id, COUNT(*) FROM People GROUP BY id");
  EXPECT_FALSE(rows->updatable());
  EXPECT_EQ(rows->Edit().number(), kReadOnly);
  EXPECT_EQ(rows->AddNew().number(), kReadOnly);
  EXPECT_EQ(rows->Delete().number(), kReadOnly);
}

TEST_P(Recordsets, BelongToTheTransactionOfTheirConnection) {
  for (const char* key : kKeys) {
    SCOPED_TRACE(key);
    MakePeople(key);
    ASSERT_TRUE(server().Begin().ok());
    const auto rows = Open("SELECT * FROM People WHERE id = 2");
    ASSERT_TRUE(rows->Edit().ok());
    Set(*rows, "name", std::string("Undone"));
    EXPECT_TRUE(rows->Update().ok());
    EXPECT_TRUE(server().InTransaction());
    ASSERT_TRUE(server().Rollback().ok());
    EXPECT_THAT(Rows("SELECT name FROM People WHERE id = 2"), ElementsAre("Bob"));
  }
}

ZENT_ON_BOTH_KINDS(Recordsets);

}  // namespace
}  // namespace zent::odbc
