#include <gtest/gtest.h>

#include "jet/sql/execution/SqlFile.h"

// What the updater asks of an Access file, in the words that it uses.
namespace zent::jet::testing {
namespace {

constexpr const char* kLookupTable =
    "CREATE TABLE Lookup (LookupFieldName TEXT(50), LookupValue TEXT(100), LookupDesc TEXT(100), "
    "DisplayOrder TEXT(10))";
constexpr const char* kConsultantsTable =
    "CREATE TABLE Consultants (ConsultantID TEXT(20), ConsIntID TEXT(11), DisplayName TEXT(50), "
    "UserIDs MEMO)";
constexpr const char* kContactsTable =
    "CREATE TABLE Contacts (ContactIntID TEXT(11) PRIMARY KEY, DisplayName TEXT(50), Active YESNO)";

void FillKorvo(SqlFile& file) {
  file.RunAll({
      "CREATE TABLE Counters (TableName TEXT(50), CurCount TEXT(20))",
      kLookupTable,
      "CREATE INDEX ByField ON Lookup (LookupFieldName, LookupValue)",
      "CREATE TABLE Aliases (Name TEXT(50), Alias TEXT(50))",
      kConsultantsTable,
      kContactsTable,
      "CREATE TABLE Links (FromID TEXT(11), ToID TEXT(11), Type SHORT, SubType SHORT)",
      "CREATE INDEX ByFrom ON Links (FromID)",
      "INSERT INTO Counters VALUES ('SiteID', '0')",
      "INSERT INTO Counters VALUES ('Companies', 'CM00000099')",
      "INSERT INTO Lookup VALUES ('Company.Type', 'O''Neil', NULL, '2')",
      "INSERT INTO Lookup VALUES ('Company.Type', 'Client', 'a client', NULL)",
      "INSERT INTO Aliases VALUES ('Robert', 'Bob')",
      "INSERT INTO Consultants VALUES ('C-7', 'CS00000007', 'Carla', NULL)",
      "INSERT INTO Contacts VALUES ('CN00000001', 'Ann Ames', TRUE)",
      "INSERT INTO Links VALUES ('CS00000007', 'CN00000001', 1, 1)",
      "INSERT INTO Links VALUES ('CS00000007', 'RQ00000001', 1, 1)",
      "INSERT INTO Links VALUES ('CS00000007', 'CM00000001', 1, 1)",
      "INSERT INTO Links VALUES ('RM00000001', 'CN00000001', 1, 1)",
  });
}

TEST(SystemStatements, Run) {
  SqlFile file;
  FillKorvo(file);
  const SqlCase cases[] = {
      {"whether a field is there", "SELECT * FROM Counters WHERE 1=2 ", ""},
      {"the site", "SELECT * FROM Counters WHERE TableName='SiteID' ", "SiteID|0"},
      {"a counter", "SELECT * FROM Counters WHERE TableName='companies' ", "Companies|CM00000099"},
      {"no counter", "SELECT * FROM Counters WHERE TableName='contacts' ", ""},
      {"a value of a list",
       "Select * FROM Lookup WHERE LookupFieldName='Company.Type' AND  LookupValue='O''Neil'",
       "Company.Type|O'Neil|NULL|2"},
      {"with its place",
       "Select * FROM Lookup WHERE LookupFieldName='Company.Type' AND  LookupValue='O''Neil' AND "
       "DisplayOrder='3'",
       ""},
      {"a name that breaks the text",
       "Select * FROM Lookup WHERE LookupFieldName='O'Neil' AND  LookupValue='x'", "error 3075"},
      {"an alias", "Select * FROM Aliases WHERE Name='Robert' AND  Alias='Bob'", "Robert|Bob"},
      {"a consultant", "Select ConsIntID From Consultants Where ConsultantID='C-7'", "CS00000007"},
      {"who a mail went to", "Select DisplayName From Contacts Where ContactIntID='CN00000001'",
       "Ann Ames"},
      {"or a consultant", "Select DisplayName From Consultants Where ConsIntID='CN00000001'", ""},
      {"links of consultants",
       "Select * FROM Links where FromID LIKE 'CS*' AND (ToID LIKE 'CN*' OR ToID LIKE 'RQ*') ",
       "CS00000007|CN00000001|1|1 / CS00000007|RQ00000001|1|1"},
      {"a part of a text", "SELECT Mid(DisplayName,1,3) FROM Contacts WHERE Active=True", "Ann"},
      {"how many", "SELECT Count(*) FROM Links", "4"},
  };
  for (const SqlCase& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(file.Rows(row.statement), row.outcome) << row.statement;
  }
}

TEST(SystemStatements, CopyATableIntoAnotherFile) {
  SqlFile file;
  FillKorvo(file);
  file.Other("D:\\Backup\\Korvo.mdb")
      .RunAll({"CREATE TABLE Aliases (Name TEXT(50), Alias TEXT(50))"});
  EXPECT_EQ(file.Run("INSERT INTO Aliases IN \"D:\\Backup\\Korvo.mdb\" SELECT * FROM Aliases"),
            "1");
  EXPECT_EQ(file.Other("D:\\Backup\\Korvo.mdb").Rows("SELECT * FROM Aliases"), "Robert|Bob");
}

}  // namespace
}  // namespace zent::jet::testing
