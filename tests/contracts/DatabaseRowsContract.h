#pragma once

#include "contracts/ContractDatabase.h"

/// Rows that are walked, edited, added and deleted.
namespace zent::testing {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

TEST_P(DatabaseContract, WalksATableOrAStatementFromItsFirstRow) {
  MakePeople();
  EXPECT_THAT(Rows("People"),
              UnorderedElementsAre("Ann|Ulm|1", "Bob|Bonn|2", "Cid|Ulm|3", "Dee|K\xC3\xB6ln|4"));
  EXPECT_THAT(Rows("PEOPLE"), ::testing::SizeIs(4));
  EXPECT_THAT(Rows("SELECT * FROM People WHERE City='Ulm' "),
              UnorderedElementsAre("Ann|Ulm|1", "Cid|Ulm|3"));
  EXPECT_THAT(Rows("SELECT * FROM People WHERE City='Rom'"), IsEmpty());
}

TEST_P(DatabaseContract, TellsTheFieldsOfARecordset) {
  MakePeople();
  const auto rows = OpenToRead("SELECT * FROM People WHERE Name='Nobody'");
  ASSERT_EQ(rows->Fields().size(), 3U);
  EXPECT_EQ(rows->Fields()[0].name, "Name");
  EXPECT_EQ(rows->Fields()[0].type, FieldType::Text);
  EXPECT_EQ(rows->Fields()[0].size, 20);
  EXPECT_EQ(rows->Fields()[2].name, "Age");
  EXPECT_EQ(rows->Fields()[2].type, FieldType::Long);
}

TEST_P(DatabaseContract, ReadsTheFieldsOfARowInAnyOrderAndCase) {
  MakePeople();
  const auto rows = OpenToRead("SELECT * FROM People WHERE Name='Bob'");
  EXPECT_EQ(Text(*rows, "AGE"), "2");
  EXPECT_EQ(Text(*rows, "name"), "Bob");
  EXPECT_EQ(Text(*rows, "City"), "Bonn");
  EXPECT_EQ(Text(*rows, "Age"), "2");
}

TEST_P(DatabaseContract, WalksAgainAfterMoveFirst) {
  MakePeople();
  const auto rows = OpenToChange("SELECT * FROM People WHERE City='Ulm'");
  const std::string first = Text(*rows, "Name");
  while (!rows->AtEnd()) ASSERT_TRUE(rows->MoveNext().ok());
  ASSERT_TRUE(rows->MoveFirst().ok());
  EXPECT_FALSE(rows->AtEnd());
  EXPECT_EQ(Text(*rows, "Name"), first);
}

TEST_P(DatabaseContract, IsAtItsEndAtOnceWithoutRows) {
  MakeTable(PeopleTable());
  const auto rows = OpenToChange("People");
  EXPECT_TRUE(rows->AtEnd());
  EXPECT_TRUE(rows->MoveFirst().ok());
  EXPECT_TRUE(rows->AtEnd());
}

TEST_P(DatabaseContract, AddsRowsToATableThatIsOpenedForThatAlone) {
  MakePeople();
  auto opened = database().OpenRecordset("PEOPLE", RecordsetUse::Add);
  ASSERT_TRUE(opened.ok()) << opened.error().description;
  Recordset& rows = *opened.value();
  if (database().Kind() == DatabaseKind::Server) {
    EXPECT_TRUE(rows.AtEnd()) << "rows that nobody wants were read";
  }
  for (const char* name : {"Eve", "Fay"}) {
    ASSERT_TRUE(rows.AddNew().ok());
    Set(rows, "Name", name);
    Set(rows, "City", "Wien");
    const Status added = rows.Update();
    ASSERT_TRUE(added.ok()) << added.error().description;
  }
  EXPECT_THAT(Rows("SELECT * FROM People WHERE City='Wien'"),
              UnorderedElementsAre("Eve|Wien|null", "Fay|Wien|null"));
  EXPECT_THAT(Rows("People"), ::testing::SizeIs(6));
}

TEST_P(DatabaseContract, EditsEachRowOnTheWay) {
  MakePeople();
  const auto rows = OpenToChange("People");
  int met = 0;
  for (; !rows->AtEnd(); ++met) {
    const std::string name = Text(*rows, "Name");
    ASSERT_TRUE(rows->Edit().ok());
    Set(*rows, "CITY", name + " town");
    EXPECT_EQ(Text(*rows, "City"), name + " town");
    EXPECT_EQ(Text(*rows, "Name"), name);
    const Status saved = rows->Update();
    ASSERT_TRUE(saved.ok()) << saved.error().description;
    EXPECT_EQ(Text(*rows, "City"), name + " town");
    ASSERT_TRUE(rows->MoveNext().ok());
  }
  EXPECT_EQ(met, 4);
  EXPECT_THAT(Rows("People"), UnorderedElementsAre("Ann|Ann town|1", "Bob|Bob town|2",
                                                   "Cid|Cid town|3", "Dee|Dee town|4"));
}

TEST_P(DatabaseContract, EditsARowTwice) {
  MakePeople();
  const auto rows = OpenToChange("SELECT * FROM People WHERE Name='Ann'");
  for (const char* city : {"Rom", "Bern"}) {
    ASSERT_TRUE(rows->Edit().ok());
    Set(*rows, "City", city);
    ASSERT_TRUE(rows->Update().ok());
  }
  EXPECT_THAT(Rows("SELECT * FROM People WHERE Name='Ann'"), ElementsAre("Ann|Bern|1"));
}

TEST_P(DatabaseContract, SavesAChangeToNullAndOneToWhatWasThere) {
  MakePeople();
  const auto rows = OpenToChange("SELECT * FROM People WHERE Name='Ann'");
  ASSERT_TRUE(rows->Edit().ok());
  Set(*rows, "City", FieldValue());
  Set(*rows, "Age", std::int32_t{1});
  ASSERT_TRUE(rows->Update().ok());
  ASSERT_TRUE(rows->Edit().ok());
  ASSERT_TRUE(rows->Update().ok());
  EXPECT_THAT(Rows("SELECT * FROM People WHERE Name='Ann'"), ElementsAre("Ann|null|1"));
}

TEST_P(DatabaseContract, GivesUpAChangeThatIsCancelledOrLeft) {
  MakePeople();
  const auto rows = OpenToChange("People");
  const std::string before = RowText(*rows);
  ASSERT_TRUE(rows->Edit().ok());
  Set(*rows, "City", "Rom");
  rows->CancelUpdate();
  EXPECT_EQ(RowText(*rows), before);
  ASSERT_TRUE(rows->Edit().ok());
  Set(*rows, "City", "Rom");
  ASSERT_TRUE(rows->MoveNext().ok());
  ASSERT_TRUE(rows->AddNew().ok());
  Set(*rows, "Name", "Eve");
  ASSERT_TRUE(rows->MoveNext().ok());
  ASSERT_TRUE(rows->AddNew().ok());
  EXPECT_THAT(Rows("SELECT * FROM People WHERE City='Rom'"), IsEmpty());
  EXPECT_THAT(Rows("People"), ::testing::SizeIs(4));
}

/// Whether rows that were added meanwhile are met is the engine's own business.
TEST_P(DatabaseContract, AddsRowsOnTheWay) {
  MakePeople();
  const auto rows = OpenToChange("People");
  std::set<std::string> met;
  while (!rows->AtEnd()) {
    const std::string name = Text(*rows, "Name");
    EXPECT_TRUE(met.insert(name).second) << name << " is met twice";
    if (name.size() == 3) {
      ASSERT_TRUE(rows->AddNew().ok());
      Set(*rows, "Name", name + " junior");
      EXPECT_EQ(Text(*rows, "Name"), name + " junior");
      ASSERT_TRUE(rows->Update().ok());
      EXPECT_EQ(Text(*rows, "Name"), name) << "the present row is the one from before";
    }
    ASSERT_TRUE(rows->MoveNext().ok());
  }
  EXPECT_THAT(met, ::testing::IsSupersetOf({"Ann", "Bob", "Cid", "Dee"}));
  EXPECT_THAT(Rows("People"), ::testing::SizeIs(8));
  EXPECT_THAT(Rows("SELECT * FROM People WHERE Name='Ann junior'"),
              ElementsAre("Ann junior|null|null"));
}

TEST_P(DatabaseContract, AddsARowToAnEmptyTable) {
  MakeTable(PeopleTable());
  const auto rows = OpenToChange("People");
  ASSERT_TRUE(rows->AddNew().ok());
  Set(*rows, "Name", "Eve");
  ASSERT_TRUE(rows->Update().ok());
  EXPECT_THAT(Rows("People"), ElementsAre("Eve|null|null"));
}

TEST_P(DatabaseContract, DeletesRowsOnTheWay) {
  MakePeople();
  const auto rows = OpenToChange("People");
  std::set<std::string> met;
  while (!rows->AtEnd()) {
    met.insert(Text(*rows, "Name"));
    if (Text(*rows, "City") == "Ulm") {
      const Status deleted = rows->Delete();
      ASSERT_TRUE(deleted.ok()) << deleted.error().description;
      EXPECT_FALSE(rows->Get("Name").ok());
    }
    ASSERT_TRUE(rows->MoveNext().ok());
  }
  EXPECT_THAT(met, UnorderedElementsAre("Ann", "Bob", "Cid", "Dee"));
  EXPECT_THAT(Rows("People"), UnorderedElementsAre("Bob|Bonn|2", "Dee|K\xC3\xB6ln|4"));
}

TEST_P(DatabaseContract, RunsStatementsBesideAWalk) {
  for (const RecordsetUse use : {RecordsetUse::Read, RecordsetUse::Change}) {
    SCOPED_TRACE(use == RecordsetUse::Read ? "to read" : "to change");
    if (use == RecordsetUse::Read) MakePeople();
    const auto rows = database().OpenRecordset("People", use);
    ASSERT_TRUE(rows.ok());
    std::vector<std::string> met;
    while (!rows.value()->AtEnd()) {
      met.push_back(Text(*rows.value(), "Name"));
      const Result<std::int64_t> changed =
          database().Execute("UPDATE People SET City='x" + std::to_string(met.size()) + "'");
      ASSERT_TRUE(changed.ok()) << changed.error().description;
      EXPECT_EQ(changed.value(), 4);
      ASSERT_TRUE(rows.value()->MoveNext().ok());
    }
    EXPECT_THAT(met, UnorderedElementsAre("Ann", "Bob", "Cid", "Dee"));
    ASSERT_TRUE(database().Execute("UPDATE People SET City='Ulm'").ok());
  }
}

TEST_P(DatabaseContract, TellsHowManyRowsAStatementChanged) {
  MakePeople();
  EXPECT_EQ(database().Execute("UPDATE People SET City='Rom' WHERE City='Ulm'").value_or(-1), 2);
  EXPECT_EQ(database().Execute("UPDATE People SET City='Rom' WHERE City='Ulm'").value_or(-1), 0);
  EXPECT_THAT(Rows("SELECT * FROM People WHERE City='Rom'"),
              UnorderedElementsAre("Ann|Rom|1", "Cid|Rom|3"));
}

TEST_P(DatabaseContract, TakesTablesAndFieldsOfOddNames) {
  MakeTable({.name = "Two words",
             .fields = {{.name = "it's \"odd\"", .type = FieldType::Text, .size = 20},
                        {.name = "Order", .type = FieldType::Long}}});
  const auto rows = OpenToChange("Two words");
  ASSERT_NE(rows, nullptr);
  ASSERT_TRUE(rows->AddNew().ok());
  Set(*rows, "it's \"odd\"", "it's \"quoted\"; ?");
  Set(*rows, "order", std::int32_t{7});
  const Status added = rows->Update();
  ASSERT_TRUE(added.ok()) << added.error().description;
  EXPECT_THAT(Rows("two WORDS"), ElementsAre("it's \"quoted\"; ?|7"));
}

}  // namespace zent::testing
