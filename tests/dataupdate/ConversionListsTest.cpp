#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dataupdate/Conversion.h"
#include "dataupdate/DatabaseMachine.h"

namespace zent {
namespace {

using testing::DatabaseMachine;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class ListSections : public ::testing::Test {
 protected:
  ListSections() : conversion(machine.run, *machine.source, *machine.korvo) {
    for (OpenedDatabase* database : {machine.korvo.get(), machine.source.get()}) {
      machine.Execute(*database,
                      {"CREATE TABLE Lookup (LookupFieldName TEXT(50), LookupValue TEXT(50), "
                       "LookupDesc TEXT(50), DisplayOrder TEXT(10))",
                       "CREATE TABLE Aliases (Name TEXT(30), Alias TEXT(30))"});
    }
    machine.Execute(*machine.korvo,
                    {"CREATE TABLE Classifications (TableName TEXT(30), ClassificationType "
                     "TEXT(30), ClassificationName TEXT(60))"});
  }

  DatabaseMachine machine;
  Conversion conversion;
};

TEST_F(ListSections, ClassificationsBecomeValuesOfLists) {
  machine.Execute(*machine.korvo,
                  {"INSERT INTO Lookup VALUES ('Contacts.Kind', 'Friend', 'mine', '4')",
                   "INSERT INTO Classifications VALUES ('Contacts', 'Kind', 'Friend')",
                   "INSERT INTO Classifications VALUES ('Contacts', 'Kind', 'Foe')",
                   "INSERT INTO Classifications VALUES ('Contacts', 'Kind', 'Foe')"});
  ListClassifications(conversion);
  EXPECT_THAT(machine.Rows("SELECT * FROM Lookup"),
              UnorderedElementsAre("Contacts.Kind|Friend|mine|4", "Contacts.Kind|Foe||"));
  EXPECT_THAT(machine.messages(), ElementsAre("Updating Classifications"));
  EXPECT_EQ(conversion.count, 1U);
  EXPECT_THAT(machine.observer.progress, IsEmpty());
}

TEST_F(ListSections, EveryTenthClassificationShowsTheCount) {
  for (int i = 0; i < 25; ++i) {
    machine.Execute(*machine.korvo, {"INSERT INTO Classifications VALUES ('T', 'K', 'v" +
                                     std::to_string(i) + "')"});
  }
  ListClassifications(conversion);
  EXPECT_THAT(machine.observer.progress, ElementsAre("      10 Items", "      20 Items"));
}

TEST_F(ListSections, AClassificationThatCannotBeReadAddsNothing) {
  for (const char* fields : {"ClassificationType TEXT(30), ClassificationName TEXT(60)",
                             "TableName TEXT(30), ClassificationName TEXT(60)",
                             "TableName TEXT(30), ClassificationType TEXT(30)"}) {
    SCOPED_TRACE(fields);
    machine.Execute(*machine.korvo, {"DROP TABLE Classifications",
                                     std::string("CREATE TABLE Classifications (") + fields + ")",
                                     "INSERT INTO Classifications VALUES ('a', 'b')"});
    machine.window.questions.clear();
    ListClassifications(conversion);
    EXPECT_THAT(machine.Rows("SELECT * FROM Lookup"), IsEmpty());
    EXPECT_EQ(machine.window.questions.size(), 1U);
  }
}

TEST_F(ListSections, ValuesComeFromTheSource) {
  machine.Execute(*machine.source, {"INSERT INTO Lookup VALUES ('City', 'Rome', 'x', '1')",
                                    "INSERT INTO Lookup VALUES ('It''s', 'y', Null, Null)",
                                    "INSERT INTO Lookup VALUES ('City', 'Oslo', 'z', Null)"});
  ListLookupItems(conversion);
  EXPECT_THAT(machine.Rows("SELECT * FROM Lookup"),
              UnorderedElementsAre("City|Rome|x|1", "City|Oslo|z|"));
  EXPECT_EQ(machine.window.questions.size(), 1U) << "the list name with a quote";
  EXPECT_EQ(conversion.count, 2U);
}

TEST_F(ListSections, AliasesComeOnce) {
  machine.Execute(*machine.korvo, {"INSERT INTO Aliases VALUES ('Robert', 'Bob')"});
  machine.Execute(*machine.source, {"INSERT INTO Aliases VALUES ('Robert', 'Bob')",
                                    "INSERT INTO Aliases VALUES ('Robert', 'Rob')",
                                    "INSERT INTO Aliases VALUES ('Robert', 'Rob')",
                                    "INSERT INTO Aliases VALUES ('O''Neil', 'x')"});
  AddAliases(conversion);
  EXPECT_THAT(machine.Rows("SELECT * FROM Aliases"),
              UnorderedElementsAre("Robert|Bob", "Robert|Rob"));
  EXPECT_EQ(machine.window.questions.size(), 1U) << "the name with a quote";
  EXPECT_EQ(conversion.count, 1U);
}

TEST_F(ListSections, AnAliasThatCannotBeReadAddsNothing) {
  for (const char* field : {"Name", "Alias"}) {
    SCOPED_TRACE(field);
    machine.Execute(*machine.source, {"DROP TABLE Aliases",
                                      std::string("CREATE TABLE Aliases (") + field + " TEXT(30))",
                                      "INSERT INTO Aliases VALUES ('Bob')"});
    machine.window.questions.clear();
    AddAliases(conversion);
    EXPECT_THAT(machine.Rows("SELECT * FROM Aliases"), IsEmpty());
    EXPECT_EQ(machine.window.questions.size(), 1U);
  }
}

}  // namespace
}  // namespace zent
