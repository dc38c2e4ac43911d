#pragma once

#include "contracts/ContractDatabase.h"

/// Changes of rows that are saved together or not at all.
namespace zent::testing {

/// Adds a row, changes one and deletes one.
inline void ChangeThreeRows(OpenedDatabase& database) {
  const auto opened = database.OpenRecordset("People", RecordsetUse::Change);
  ASSERT_TRUE(opened.ok());
  Recordset& rows = *opened.value();
  ASSERT_TRUE(rows.AddNew().ok());
  ASSERT_TRUE(rows.Set("Name", "Eve").ok());
  ASSERT_TRUE(rows.Update().ok());
  while (!rows.AtEnd()) {
    const std::string name = rows.Get("Name").value_or({}).AsText();
    if (name == "Ann") {
      ASSERT_TRUE(rows.Delete().ok());
    } else if (name == "Bob") {
      ASSERT_TRUE(rows.Edit().ok());
      ASSERT_TRUE(rows.Set("City", "Rom").ok());
      ASSERT_TRUE(rows.Update().ok());
    }
    ASSERT_TRUE(rows.MoveNext().ok());
  }
  ASSERT_TRUE(database.Execute("UPDATE People SET City='Bern' WHERE Name='Cid'").ok());
}

TEST_P(DatabaseContract, KeepsWhatIsCommitted) {
  MakePeople();
  ASSERT_TRUE(database().BeginTransaction().ok());
  EXPECT_TRUE(database().InTransaction());
  ChangeThreeRows(database());
  ASSERT_TRUE(database().Commit().ok());
  EXPECT_FALSE(database().InTransaction());
  const auto another = OpenAnother();
  EXPECT_THAT(RowsOf(*another, "People"),
              ::testing::UnorderedElementsAre("Eve|null|null", "Bob|Rom|2", "Cid|Bern|3",
                                              "Dee|K\xC3\xB6ln|4"));
}

TEST_P(DatabaseContract, UndoesWhatIsRolledBackAndGoesOn) {
  MakePeople();
  const std::vector<std::string> before = Rows("People");
  ASSERT_TRUE(database().BeginTransaction().ok());
  ChangeThreeRows(database());
  ASSERT_TRUE(database().Rollback().ok());
  EXPECT_FALSE(database().InTransaction());
  EXPECT_THAT(Rows("People"), ::testing::UnorderedElementsAreArray(before));
  ASSERT_TRUE(database().BeginTransaction().ok());
  ASSERT_TRUE(database().Rollback().ok());
}

TEST_P(DatabaseContract, UndoesAnOpenTransactionWhenItIsClosed) {
  MakePeople();
  const std::vector<std::string> before = Rows("People");
  ASSERT_TRUE(database().BeginTransaction().ok());
  ChangeThreeRows(database());
  ASSERT_TRUE(CloseDatabase().ok());
  const auto another = OpenAnother();
  EXPECT_THAT(RowsOf(*another, "People"), ::testing::UnorderedElementsAreArray(before));
}

TEST_P(DatabaseContract, SavesEachChangeAloneWithoutATransaction) {
  MakePeople();
  EXPECT_FALSE(database().InTransaction());
  ChangeThreeRows(database());
  const auto another = OpenAnother();
  EXPECT_THAT(RowsOf(*another, "SELECT * FROM People WHERE Name='Bob'"),
              ::testing::ElementsAre("Bob|Rom|2"));
}

TEST_P(DatabaseContract, AFailedChangeLeavesItsTransactionOpen) {
  MakePeople();
  ASSERT_TRUE(database().BeginTransaction().ok());
  ASSERT_TRUE(database().Execute("UPDATE People SET City='Rom' WHERE Name='Bob'").ok());
  {
    const auto rows = OpenToChange("People");
    ASSERT_TRUE(rows->AddNew().ok());
    Set(*rows, "Name", "Ann");
    ExpectFault(rows->Update(), kEngineDuplicateKey);
  }
  EXPECT_TRUE(database().InTransaction());
  ASSERT_TRUE(database().Commit().ok());
  EXPECT_THAT(Rows("SELECT * FROM People WHERE Name='Bob'"), ::testing::ElementsAre("Bob|Rom|2"));
  EXPECT_THAT(Rows("People"), ::testing::SizeIs(4));
}

}  // namespace zent::testing
