#pragma once

#include "contracts/ContractDatabase.h"

/// Errors by their numbers; none changes anything.
namespace zent::testing {

inline constexpr int kFaultUpdateWithoutEdit = 3020;
inline constexpr int kFaultNoCurrentRecord = 3021;
inline constexpr int kFaultTextTooLong = 3163;
inline constexpr int kFaultWrongType = 3421;

struct DatabaseFault {
  const char* what;
  Status (*call)(OpenedDatabase&);
  int number;
};

inline const DatabaseFault kDatabaseFaults[] = {
    {"a table that is not there",
     [](OpenedDatabase& database) {
       return database.OpenRecordset("Nowhere", RecordsetUse::Change).status();
     },
     kEngineNoSuchTable},
    {"rows of a table that is not there",
     [](OpenedDatabase& database) {
       return database.OpenRecordset("SELECT * FROM Nowhere", RecordsetUse::Read).status();
     },
     kEngineNoSuchTable},
    {"a change of a table that is not there",
     [](OpenedDatabase& database) {
       return database.Execute("UPDATE Nowhere SET City='Rom'").status();
     },
     kEngineNoSuchTable},
};

TEST_P(DatabaseContract, TellsWhatIsNotThere) {
  MakePeople();
  for (const DatabaseFault& row : kDatabaseFaults) {
    SCOPED_TRACE(row.what);
    ExpectFault(row.call(database()), row.number);
    EXPECT_THAT(Rows("People"), ::testing::SizeIs(4));
  }
}

struct RowFault {
  const char* what;
  Status (*call)(Recordset&);
  int number;
};

inline Status EditAndSet(Recordset& rows, std::string_view field, const FieldValue& value) {
  if (Status begun = rows.Edit(); !begun.ok()) return begun;
  return rows.Set(field, value);
}

inline Status NameAs(Recordset& rows, const Status& begun, const char* name) {
  if (!begun.ok()) return begun;
  if (Status set = rows.Set("Name", name); !set.ok()) return set;
  return rows.Update();
}

inline const RowFault kRowFaults[] = {
    {"a field that is not there", [](Recordset& rows) { return rows.Get("Street").status(); },
     kEngineItemNotFound},
    {"a field that is not there is set",
     [](Recordset& rows) { return EditAndSet(rows, "Street", "x"); }, kEngineItemNotFound},
    {"a value without Edit", [](Recordset& rows) { return rows.Set("City", "Rom"); },
     kFaultUpdateWithoutEdit},
    {"Update without Edit", [](Recordset& rows) { return rows.Update(); }, kFaultUpdateWithoutEdit},
    {"a text too long", [](Recordset& rows) { return EditAndSet(rows, "City", "12345678901"); },
     kFaultTextTooLong},
    {"words for a number", [](Recordset& rows) { return EditAndSet(rows, "Age", "very old"); },
     kFaultWrongType},
    {"a new row with a key that is there",
     [](Recordset& rows) { return NameAs(rows, rows.AddNew(), "Bob"); }, kEngineDuplicateKey},
    {"a row gets a key that is there",
     [](Recordset& rows) { return NameAs(rows, rows.Edit(), "Bob"); }, kEngineDuplicateKey},
};

TEST_P(DatabaseContract, RefusesAWrongChangeOfARow) {
  MakePeople();
  const std::vector<std::string> before = Rows("People");
  for (const RowFault& row : kRowFaults) {
    SCOPED_TRACE(row.what);
    const auto rows = OpenToChange("SELECT * FROM People WHERE Name='Ann'");
    ExpectFault(row.call(*rows), row.number);
    rows->CancelUpdate();
    EXPECT_EQ(RowText(*rows), "Ann|Ulm|1");
    EXPECT_THAT(Rows("People"), ::testing::UnorderedElementsAreArray(before));
  }
}

TEST_P(DatabaseContract, AFailedUpdateHasToBeBegunAgain) {
  MakePeople();
  const auto rows = OpenToChange("SELECT * FROM People WHERE Name='Ann'");
  ExpectFault(NameAs(*rows, rows->Edit(), "Bob"), kEngineDuplicateKey);
  ExpectFault(rows->Update(), kFaultUpdateWithoutEdit);
  EXPECT_TRUE(NameAs(*rows, rows->Edit(), "Anna").ok());
  EXPECT_EQ(RowText(*rows), "Anna|Ulm|1");
}

inline const RowFault kNoRowFaults[] = {
    {"reads", [](Recordset& rows) { return rows.Get("Name").status(); }, kFaultNoCurrentRecord},
    {"edits", [](Recordset& rows) { return rows.Edit(); }, kFaultNoCurrentRecord},
    {"deletes", [](Recordset& rows) { return rows.Delete(); }, kFaultNoCurrentRecord},
};

TEST_P(DatabaseContract, HasNoRowBehindTheLastOneOrAfterItsDeletion) {
  MakePeople();
  const auto behind = OpenToChange("SELECT * FROM People WHERE City='Rom'");
  const auto deleted = OpenToChange("SELECT * FROM People WHERE Name='Dee'");
  ASSERT_TRUE(deleted->Delete().ok());
  for (const RowFault& row : kNoRowFaults) {
    SCOPED_TRACE(row.what);
    ExpectFault(row.call(*behind), row.number);
    ExpectFault(row.call(*deleted), row.number);
  }
  ExpectFault(behind->MoveNext(), kFaultNoCurrentRecord);
  EXPECT_THAT(Rows("People"), ::testing::SizeIs(3));
}

}  // namespace zent::testing
