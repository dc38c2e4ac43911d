#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/run/PathBounds.h"
#include "fakes/run/RunBuilder.h"

namespace zent {
namespace {

using testing::RunBuilder;

struct FolderCase {
  const char* what;
  const char* path;
  const char* folder;
  bool inside;
};

constexpr FolderCase kFolderCases[] = {
    {"a file of the folder", R"(C:\Korvo\a.xml)", R"(C:\Korvo\)", true},
    {"in any case", R"(c:\KORVO\a.xml)", R"(C:\Korvo\)", true},
    {"with slashes", "C:/Korvo/Sub/a.xml", R"(C:\Korvo)", true},
    {"up and down within it", R"(C:\Korvo\Sub\..\a.xml)", R"(C:\Korvo\)", true},
    {"out of it", R"(C:\Korvo\..\a.xml)", R"(C:\Korvo\)", false},
    {"a folder whose name begins alike", R"(C:\Korvo2\a.xml)", R"(C:\Korvo\)", false},
    {"another drive", R"(D:\Korvo\a.xml)", R"(C:\Korvo\)", false},
};

TEST(LiesIn, ComparesFullPaths) {
  for (const FolderCase& row : kFolderCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    EXPECT_EQ(LiesIn(given.machine.files, row.path, row.folder), row.inside);
  }
}

TEST(LiesInKnownFolder, KnowsThePackageAndTheFoldersOfTheMacros) {
  RunBuilder given;
  for (const char* path : {R"(D:\Package\a.xml)", R"(D:\Data\Sys\a.xml)", R"(C:\Korvo\a.xml)",
                           R"(C:\Program Files\Zent\a.xml)", R"(C:\windows\a.xml)"}) {
    EXPECT_TRUE(LiesInKnownFolder(given.run, path)) << path;
  }
  for (const char* path : {R"(D:\a.xml)", R"(D:\Data\..\a.xml)", R"(C:\boot.ini)", R"(E:\x.xml)"}) {
    EXPECT_FALSE(LiesInKnownFolder(given.run, path)) << path;
  }
}

TEST(LiesInKnownFolder, AFolderThatTheMachineLacksHoldsNothing) {
  RunBuilder given;
  given.run.state.WinAppDataDir.clear();
  EXPECT_FALSE(LiesInKnownFolder(given.run, R"(E:\x.xml)"));
}

struct MachineCase {
  const char* what;
  const char* path;
  bool off;
};

constexpr MachineCase kMachineCases[] = {
    {"a file", R"(D:\Data\a.xml)", false},
    {"a file outside the known folders", R"(E:\a.xml)", false},
    {"a doubled separator within", R"(D:\\Data\\a.xml)", false},
    {"a name that only begins like a device", R"(D:\Data\console.xml)", false},
    {"a port without a number", R"(D:\Data\com.xml)", false},
    {"a folder called like a device is none", R"(D:\nul\a.xml)", false},
    {"another computer", R"(\\server\share\a.xml)", true},
    {"another computer with slashes", "//server/share/a.xml", true},
    {"a raw device", R"(\\.\C:)", true},
    {"a long path form", R"(\\?\E:\a.xml)", true},
    {"a device", "NUL", true},
    {"a device in a folder, with an extension", R"(D:\Data\Customize\con.xml)", true},
    {"a port", R"(D:\Data\COM1.xml)", true},
    {"a printer", R"(D:\Data\lpt9)", true},
    {"a data stream of a device", "con:", true},
};

TEST(LeadsOffTheMachine, DevicesAndOtherComputersDo) {
  for (const MachineCase& row : kMachineCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    EXPECT_EQ(LeadsOffTheMachine(given.run, row.path), row.off);
  }
}

struct DescriptionCase {
  const char* what;
  const char* argument;
  const char* path;
  bool outside;
};

constexpr DescriptionCase kDescriptionCases[] = {
    {"a name lies in the package", "Forms.xml", R"(D:\Package\Forms.xml)", false},
    {"a folder of the package", R"(Xml\Forms.xml)", R"(D:\Package\Xml\Forms.xml)", false},
    {"a separator first does not lead out", R"(\Forms.xml)", R"(D:\Package\\Forms.xml)", false},
    {"a macro", R"($(datapath)\Forms.xml)", R"(D:\Data\Forms.xml)", false},
    {"a drive", R"(C:\Korvo\Forms.xml)", R"(C:\Korvo\Forms.xml)", false},
    {"above the package", R"(..\Forms.xml)", R"(D:\Package\..\Forms.xml)", true},
    {"a drive's root", R"(C:\Forms.xml)", R"(C:\Forms.xml)", true},
    {"above a macro's folder", R"($(datapath)\..\..\Forms.xml)", R"(D:\Data\..\..\Forms.xml)",
     true},
};

TEST(UpdateDescription, LiesInThePackageUnlessAMacroOrADriveSaysOtherwise) {
  for (const DescriptionCase& row : kDescriptionCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    given.run.BeginCommand({.line = 1, .keyword = "xupd"});
    EXPECT_EQ(UpdateDescription(given.run, row.argument), row.path);
    given.run.EndCommand();
    EXPECT_EQ(given.observer.records.back().outcome, row.outside ? Outcome::Warned : Outcome::Done);
  }
}

TEST(UpdateDescription, AStrictRunRefusesOneOutside) {
  for (const DescriptionCase& row : kDescriptionCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given({.strict = true});
    EXPECT_EQ(UpdateDescription(given.run, row.argument).has_value(), !row.outside);
    EXPECT_EQ(given.run.Refused(), row.outside);
    EXPECT_EQ(given.window.boxes.size(), row.outside ? 1U : 0U);
  }
}

}  // namespace
}  // namespace zent
