#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenarios/database/KorvoMachine.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string OldData() {
  return "CREATE TABLE Links (FromID TEXT(12), ToID TEXT(12), [Type] SHORT, SubType SHORT);"
         "CREATE TABLE Reminders (RemIntID TEXT(12), ItemIntID TEXT(12), RemType TEXT(20), "
         "ApptType "
         "TEXT(20), ApptSubType TEXT(30), RemField TEXT(20), Categories TEXT(50), Owners TEXT(50), "
         "UserIDs TEXT(50));"
         "INSERT INTO Reminders VALUES ('RM1', 'CN1', 'DayEvent', NULL, NULL, 'DOE', 'x', ' Ada "
         "L', "
         "NULL);"
         "CREATE TABLE Lookup (LookupFieldName TEXT(20), LookupValue TEXT(20), LookupDesc "
         "TEXT(20), "
         "DisplayOrder TEXT(5))";
}

std::string Convert(const KorvoMachine& given, std::vector<std::string> more) {
  more.insert(more.begin(), {ZENT_PROGRAM, "convert"});
  more.insert(more.end(), {"--console", "--unattended"});
  const ProgramEnd end = RunHostProgram(more, given.machine().folder().string());
  return std::to_string(end.exit_code) + "\n" + end.output;
}

class ConvertVerb : public ::testing::Test {
 protected:
  ConvertVerb() { given.MakeDatabase("Old.mdb", OldData()); }
  fs::path Old() const { return given.machine().folder() / "Old.mdb"; }
  KorvoMachine given{{}};
};

TEST_F(ConvertVerb, RestatesADatabaseOfTheHostAndGoesOnAfterErrors) {
  const std::string end =
      Convert(given, {KorvoMachine::kTemplate, "Old.mdb", "--detailed-exitcode"});
  // Tables that this database lacks cost a box each.
  EXPECT_THAT(
      end, AllOf(StartsWith("10\n"), HasSubstr("Error creating links"),
                 HasSubstr("  Updating Manual Links \n"), HasSubstr("  Conversion completed.\n")));
  EXPECT_EQ(given.RowsOf(Old(), "SELECT FromID, ToID FROM Links"), "RM1,CN1\n");
  EXPECT_EQ(given.RowsOf(Old(),
                         "SELECT RemType, ApptType, ApptSubType, Categories, UserIDs FROM "
                         "Reminders"),
            "Appointment,Event,Employment Date,,\",Ada,\"\n");
  EXPECT_EQ(given.RowsOf(Old(), "SELECT LookupValue FROM Lookup ORDER BY DisplayOrder"),
            "Ulm\nBonn\n");
  EXPECT_EQ(given.Faults(Old()), "");
}

TEST_F(ConvertVerb, TellsADatabaseThatIsNotThere) {
  EXPECT_THAT(Convert(given, {"Nowhere.mdb", "Old.mdb"}),
              AllOf(StartsWith("1\n"), HasSubstr("Error converting "), HasSubstr("Number: 3024"),
                    HasSubstr("  Conversion failed.\n")));
  EXPECT_EQ(given.RowsOf(Old(), "SELECT * FROM Links"), "");
}

TEST_F(ConvertVerb, TakesTheStoredPasswordOfAMachine) {
  given.MakeDatabase("Locked.mdb", OldData(), "secret");
  given.machine().Put("answers", "text:secret\n");
  const std::string machine = (given.machine().folder() / "machine").string();
  const std::string answers = (given.machine().folder() / "answers").string();
  // Asked for once, and kept by the machine.
  EXPECT_THAT(Convert(given, {KorvoMachine::kTemplate, "Locked.mdb", "--machine", machine,
                              "--answers", answers}),
              StartsWith("0\n"));
  EXPECT_THAT(Convert(given, {KorvoMachine::kTemplate, "Locked.mdb", "--machine", machine}),
              StartsWith("0\n"));
  EXPECT_THAT(Convert(given, {KorvoMachine::kTemplate, "Locked.mdb"}), StartsWith("1\n"));
}

}  // namespace
}  // namespace zent::testing
