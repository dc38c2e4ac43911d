#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/fakes/DatabaseRun.h"
#include "dataupdate/DatabaseMachine.h"
#include "dataupdate/LookupImport.h"
#include "jet/format/JetErrors.h"

namespace zent {
namespace {

using testing::DatabaseMachine;
using testing::DatabaseRun;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* kKorvo = R"(D:\Data\Korvo.mdb)";
const std::vector<std::string> kLookupFields = {"LookupFieldName", "LookupValue", "LookupDesc",
                                                "DisplayOrder"};

struct LineCase {
  const char* what;
  const char* line;
  const char* item;  ///< its four texts with "|" between; null: not to be imported
};

TEST(ItemOnLine, TakesFourFields) {
  const LineCase rows[] = {
      {"all four", "City,Berlin,Capital,3", "City|Berlin|Capital|3"},
      {"quotes at the ends go", R"("City","Berlin","Capital","3")", "City|Berlin|Capital|3"},
      {"quotes within stay", R"(City,Be"rl"in,,)", R"(City|Be"rl"in||)"},
      {"a comma within quotes belongs to the text", R"(City,"Halle, Saale",x,3)",
       "City|Halle, Saale|x|3"},
      {"as it does between quotes within", R"(City,Halle "an, der" Saale,x,3)",
       R"(City|Halle "an, der" Saale|x|3)"},
      {"behind a quote without a partner the rest is one text", R"(City,"Halle,x,3)",
       "City|Halle,x,3||"},
      {"which may be in the middle", R"(City,19" rack,x,3)", R"(City|19" rack,x,3||)"},
      {"so that nothing may be left to be the value", R"("City,Berlin,x,3)", nullptr},
      {"fields that are missing are empty", "City,Berlin", "City|Berlin||"},
      {"blanks stay", "City , Berlin", "City | Berlin||"},
      {"a fifth field is left out", "a,b,c,d,e", "a|b|c|d"},
      {"no list", ",Berlin,x,1", nullptr},
      {"a blank list", "  ,Berlin,x,1", nullptr},
      {"no value", "City,,x,1", nullptr},
      {"a blank value", R"(City,"  ",x,1)", nullptr},
      {"a list alone", "City", nullptr},
      {"an empty line", "", nullptr},
      {"the heading", "LookupFieldName,LookupValue,LookupDesc,DisplayOrder", nullptr},
      {"the heading in another case and in quotes", R"("LOOKUPFIELDNAME","x")", nullptr},
  };
  for (const LineCase& row : rows) {
    SCOPED_TRACE(row.what);
    const auto item = ItemOnLine(row.line);
    ASSERT_TRUE(item.ok());
    ASSERT_EQ(item.value().has_value(), row.item != nullptr);
    if (row.item == nullptr) continue;
    const LookupItem& found = *item.value();
    EXPECT_EQ(found.list + "|" + found.value + "|" + found.description + "|" + found.order,
              row.item);
  }
}

class Import : public ::testing::Test {
 protected:
  Import() {
    machine.Execute(*machine.korvo,
                    {"CREATE TABLE Lookup (LookupFieldName TEXT(20), LookupValue TEXT(20), "
                     "LookupDesc TEXT(20), DisplayOrder TEXT(5))"});
    EXPECT_TRUE(machine.korvo->Close().ok());
  }
  CommandRecord Run(std::string_view file) {
    machine.machine.files.PutFile(R"(D:\Package\Items.txt)", file);
    CommandRecord record = machine.Call(ImportLookupItems, {"importlookup", R"(Items.txt)"});
    machine.korvo = std::move(machine.engine.Open({.path = DatabaseMachine::kKorvo}).value());
    return record;
  }
  std::vector<std::string> Values() {
    return machine.Rows("SELECT LookupFieldName, LookupValue FROM Lookup");
  }

  DatabaseMachine machine;
};

TEST_F(Import, AddsTheLinesOfAFile) {
  const CommandRecord record =
      Run("LookupFieldName,LookupValue,LookupDesc,DisplayOrder\r\nCity,Berlin,Capital,1\r\n"
          "City,Berlin,Again,\r\n\r\nCity,O'Neil,,2\r\n");
  EXPECT_EQ(record.outcome, Outcome::Done) << record.reason;
  EXPECT_THAT(machine.messages(), ElementsAre("Importing Lookup Items"));
  EXPECT_THAT(Values(), ElementsAre("City|Berlin", "City|O'Neil"));
  EXPECT_FALSE(machine.run.state.ErrorOccurred);
}

TEST_F(Import, AFileWithOnlyAHeadingAddsNothing) {
  EXPECT_EQ(Run("LookupFieldName,LookupValue,LookupDesc,DisplayOrder\r\n").outcome, Outcome::Done);
  EXPECT_THAT(Values(), IsEmpty());
}

TEST_F(Import, StopsAtTheLineThatFailsAndKeepsWhatCameBefore) {
  const CommandRecord record = Run("City,Berlin\r\nIt's,broken\r\nCity,Paris\r\n");
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_TRUE(machine.run.state.ErrorOccurred);
  ASSERT_EQ(machine.messages().size(), 2U);
  EXPECT_THAT(machine.messages()[1], StartsWith("Error importing Lookup \r\nDescription: "));
  EXPECT_THAT(machine.messages()[1], HasSubstr("\r\nNumber: " + std::to_string(jet::kSyntaxError)));
  EXPECT_THAT(machine.window.boxes, IsEmpty());
  EXPECT_THAT(Values(), ElementsAre("City|Berlin"));
}

TEST_F(Import, ReportsAFileThatIsMissing) {
  const CommandRecord record = machine.Call(ImportLookupItems, {"importlookup", "None.txt"});
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_THAT(machine.messages().back(), HasSubstr("\r\nNumber: 53"));
}

TEST_F(Import, ReportsADatabaseThatIsMissing) {
  machine.run.state.KorvoDataBaseName = R"(D:\Data\None.mdb)";
  machine.machine.files.PutFile(R"(D:\Package\Items.txt)", "a,b\r\n");
  const CommandRecord record = machine.Call(ImportLookupItems, {"importlookup", "Items.txt"});
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_THAT(machine.messages().back(), HasSubstr("\r\nNumber: 3024"));
}

TEST_F(Import, NeedsAFile) {
  EXPECT_EQ(machine.Call(ImportLookupItems, {"importlookup"}).outcome, Outcome::Failed);
  EXPECT_THAT(machine.messages(), ElementsAre("Error importing Lookup \r\n"
                                              "Description: Subscript out of range\r\nNumber: 9"));
  EXPECT_THAT(machine.window.boxes, IsEmpty());
  EXPECT_TRUE(machine.run.state.ErrorOccurred);
}

struct BoundsCase {
  const char* what;
  const char* argument;
  const char* file;
  bool is_inside;
};

constexpr BoundsCase kBoundsCases[] = {
    {"the package", "Items.txt", R"(D:\Package\Items.txt)", true},
    {"a folder of a macro", R"($(apppath)\Items.txt)", R"(C:\Korvo\Items.txt)", true},
    {"the package by its drive", R"(D:\Package\Items.txt)", R"(D:\Package\Items.txt)", true},
    {"elsewhere", R"(E:\Items.txt)", R"(E:\Items.txt)", false},
    {"above the package", R"(..\Items.txt)", R"(D:\Items.txt)", false},
};

TEST(ImportLookupItems, WarnsOfAFileElsewhereAndRefusesItWhenStrict) {
  for (const BoundsCase& row : kBoundsCases) {
    SCOPED_TRACE(row.what);
    for (const bool strict : {false, true}) {
      DatabaseRun given({.strict = strict});
      given.run.state.KorvoDataBaseName = kKorvo;
      given.PutDatabase(kKorvo).Add("Lookup", kLookupFields);
      given.machine.files.PutFile(row.file, "City,Berlin\r\n");

      const CommandRecord record = given.Call(ImportLookupItems, {"importlookup", row.argument});

      const bool refused = strict && !row.is_inside;
      EXPECT_EQ(record.outcome, refused         ? Outcome::Failed
                                : row.is_inside ? Outcome::Done
                                                : Outcome::Warned);
      EXPECT_EQ(given.run.Refused(), refused);
      EXPECT_EQ(given.access.Put(kKorvo).Find("Lookup")->rows.size(), refused ? 0U : 1U);
      EXPECT_EQ(given.messages().size(), refused ? 0U : 1U);
    }
  }
}

TEST(ImportLookupItems, RecordsThatNothingWasKept) {
  const RuntimeError too_long{.number = 3163, .description = "Too long"};
  for (const bool line_fails : {false, true}) {
    DatabaseRun given;
    given.run.state.KorvoDataBaseName = kKorvo;
    given.PutDatabase(kKorvo).Add("Lookup", kLookupFields);
    given.machine.files.PutFile(R"(D:\Package\Items.txt)", "City,Berlin\r\nCity,Paris\r\n");
    if (line_fails) given.access.world.failures["Set LookupValue=Paris"] = too_long;
    given.access.world.failures["Commit"] = {.number = 61, .description = "Disk full"};

    const CommandRecord record = given.Call(ImportLookupItems, {"importlookup", "Items.txt"});

    EXPECT_EQ(record.outcome, Outcome::Failed);
    EXPECT_THAT(record.reason, HasSubstr("nothing was kept: Disk full (61)"));
    EXPECT_THAT(given.messages().back(), HasSubstr(line_fails ? "Too long" : "Disk full"));
    EXPECT_THAT(given.access.Put(kKorvo).Find("Lookup")->rows, IsEmpty());
  }
}

}  // namespace
}  // namespace zent
