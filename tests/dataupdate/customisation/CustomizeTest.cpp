#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dataupdate/customisation/Customize.h"
#include "fakes/run/RunBuilder.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::RunBuilder;

/// Keeps its tasks, and comes to the outcome it is given.
class FakeComponent : public CustomisationComponent {
 public:
  Result<CustomisationOutcome> Apply(const CustomisationTask& task) override {
    tasks.push_back(task);
    return outcome;
  }

  std::vector<CustomisationTask> tasks;
  Result<CustomisationOutcome> outcome = CustomisationOutcome::Applied;
};

constexpr const char* kDatabase = R"(D:\Data\Korvo.mdb)";
constexpr const char* kRecorded = R"(D:\Data\Customize\Customize.ini)";

TEST(Customize, HandsTheComponentItsThreePlaces) {
  RunBuilder given;
  FakeComponent component;

  EXPECT_TRUE(Customize(given.run, component, kDatabase, false).ok());

  ASSERT_EQ(component.tasks.size(), 1U);
  EXPECT_EQ(component.tasks[0].database, kDatabase);
  EXPECT_EQ(component.tasks[0].customize_folder, R"(D:\Data\Customize\)");
  EXPECT_EQ(component.tasks[0].temp_folder, R"(C:\Korvo\Temp\)");
  EXPECT_THAT(given.messages(), IsEmpty());
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_FALSE(given.run.state.ErrorOccurred);
}

struct FlagCase {
  const char* what;
  bool unless_customised;
  const char* file;  ///< in the data folder
  bool runs;
};

constexpr FlagCase kFlagCases[] = {
    {"with the flag and the file: not", true, kRecorded, false},
    {"with the flag and without the file", true, nullptr, true},
    {"without the flag and with the file", false, kRecorded, true},
    {"without either", false, nullptr, true},
    {"the file has another case", true, R"(D:\Data\CUSTOMIZE\customize.INI)", false},
    {"another file of that folder does not count", true, R"(D:\Data\Customize\Custom.ini)", true},
    {"nor does the file in the data folder itself", true, R"(D:\Data\Customize.ini)", true},
    {"nor a folder of its name", true, R"(D:\Data\Customize\Customize.ini\x)", true},
    {"nor one in the application's folder", true, R"(C:\Korvo\Customize\Customize.ini)", true},
};

TEST(Customize, TheFlagSkipsAnInstallationThatHasCustomizeIni) {
  for (const FlagCase& row : kFlagCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    FakeComponent component;
    if (row.file != nullptr) given.machine.files.PutFile(row.file, "[General]\r\n");

    EXPECT_TRUE(Customize(given.run, component, kDatabase, row.unless_customised).ok());

    EXPECT_EQ(component.tasks.size(), row.runs ? 1U : 0U);
    EXPECT_THAT(given.messages(), IsEmpty());
    EXPECT_THAT(given.window.boxes, IsEmpty());
    EXPECT_FALSE(given.run.state.ErrorOccurred);
  }
}

TEST(Customize, ReportsADatabaseThatCannotBeOpened) {
  RunBuilder given;
  FakeComponent component;
  component.outcome = CustomisationOutcome::DatabaseNotOpened;

  EXPECT_TRUE(Customize(given.run, component, kDatabase, false).ok());

  EXPECT_THAT(
      given.messages(),
      ElementsAre(R"(Error Customizing Korvo - could not open database D:\Data\Korvo.mdb)"));
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

TEST(Customize, ReportsAnErrorInOneMessage) {
  RunBuilder given;
  FakeComponent component;
  component.outcome = RuntimeError{.number = 3044, .description = "Not a valid path"};

  EXPECT_TRUE(Customize(given.run, component, kDatabase, true).ok());

  EXPECT_THAT(given.messages(), ElementsAre("Error customizing Korvo \r\n"
                                            "Description: Not a valid path\r\nNumber: 3044"));
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

TEST(Customize, ShowsNoPassword) {
  RunBuilder given;
  FakeComponent component;
  component.outcome = CustomisationOutcome::DatabaseNotOpened;

  EXPECT_TRUE(Customize(given.run, component, "DSN=Korvo;PWD=secret;UID=sa", false).ok());

  EXPECT_THAT(given.messages(), ElementsAre("Error Customizing Korvo - could not open database "
                                            "DSN=Korvo;***********UID=sa"));
}

struct DatabaseCase {
  const char* what;
  const char* argument;
  const char* database;
};

constexpr DatabaseCase kDatabaseCases[] = {
    {"a name lies in the data folder", "Korvo.mdb", R"(D:\Data\Korvo.mdb)"},
    {"so does one with a folder", R"(Old\Korvo.mdb)", R"(D:\Data\Old\Korvo.mdb)"},
    {"and one with blanks and quotes", R"(My "old" data.mdb)", R"(D:\Data\My "old" data.mdb)"},
    {"no name is the folder", "", R"(D:\Data\)"},
    {"a path stays", R"(E:\Other\Korvo.mdb)", R"(E:\Other\Korvo.mdb)"},
    {"so does a share", R"(\\server\data\Korvo.mdb)", R"(\\server\data\Korvo.mdb)"},
    {"a macro is expanded", R"($(apppath)\ZentData\Korvo.mdb)", R"(C:\Korvo\ZentData\Korvo.mdb)"},
    {"in any case", R"($(DataPath)\Korvo.mdb)", R"(D:\Data\Korvo.mdb)"},
    {"a macro alone is a folder", "$(datapath)", R"(D:\Data\)"},
    {"a connect text stays", "DSN=Korvo;UID=sa;", "DSN=Korvo;UID=sa;"},
    {"in capitals alone", "dsn=Korvo", R"(D:\Data\dsn=Korvo)"},
};

TEST(CustomisedDatabase, IsWhatTheArgumentNames) {
  const RunBuilder given;
  for (const DatabaseCase& row : kDatabaseCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(CustomisedDatabase(given.run, row.argument), row.database);
  }
}

}  // namespace
}  // namespace zent
