#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fileops/CopyCommands.h"
#include "fileops/FileMachine.h"

/// Sources that lead outside the package folder.
namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::FileMachine;
using ::testing::HasSubstr;

struct OutsideCase {
  const char* what;
  const char* source;
  bool outside;
};

constexpr OutsideCase kOutsideCases[] = {
    {"a file of the package", "new.txt", false},
    {"a file in a folder of it", R"(Sub\deep.txt)", false},
    {"up and down within it", R"(Sub\..\new.txt)", false},
    {"one dot", R"(.\new.txt)", false},
    {"out and in again: only while the folder has that name", R"(..\Package\new.txt)", true},
    {"the folder above", R"(..\Outside.txt)", true},
    {"out behind a folder", R"(Sub\..\..\Outside.txt)", true},
    {"with slashes", "../Outside.txt", true},
    {"a folder whose name begins alike", R"(..\Package2\new.txt)", true},
    {"more steps up than there are folders", R"(..\..\..\Outside.txt)", true},
};

TEST(CopyFromPackage, ASourceOutsideThePackageIsAWarning) {
  for (const OutsideCase& row : kOutsideCases) {
    SCOPED_TRACE(row.what);
    FileMachine given;
    given.machine.files.PutFile(R"(D:\Package2\new.txt)", "new");
    const CommandRecord record =
        given.Call(CopyFromPackage, {"copy", row.source, R"(C:\Korvo\fresh.txt)"});
    EXPECT_EQ(record.outcome, row.outside ? Outcome::Warned : Outcome::Done);
    EXPECT_EQ(given.machine.files.Contents(R"(C:\Korvo\fresh.txt)"), "new");
    EXPECT_FALSE(given.run.state.ErrorOccurred);
  }
}

TEST(CopyFromPackage, AStrictRunRefusesASourceOutsideBeforeAnythingIsTouched) {
  for (const auto handler : {&CopyFromPackage, &CopyFromPackageIfMissing}) {
    for (const OutsideCase& row : kOutsideCases) {
      SCOPED_TRACE(row.what);
      FileMachine given({.strict = true});
      given.Call(handler, {"", row.source, R"(C:\Korvo\fresh.txt)"});
      EXPECT_EQ(given.run.Refused(), row.outside);
      EXPECT_EQ(given.run.state.ErrorOccurred, row.outside);
      EXPECT_EQ(given.machine.files.log().changes().empty(), row.outside);
    }
  }
}

TEST(CopyFromPackage, ASourceAboveThePackageIsOutsideAlsoAtTheRootOfADrive) {
  FileMachine given({.strict = true});
  given.run.state.CurrDir = R"(D:\)";
  given.Call(CopyFromPackage, {"copy", R"(..\Outside.txt)", R"(C:\Korvo\fresh.txt)"});
  EXPECT_TRUE(given.run.Refused());
  given.Call(CopyFromPackage, {"copy", "Outside.txt", R"(C:\Korvo\fresh.txt)"});
  EXPECT_TRUE(given.machine.files.Exists(R"(C:\Korvo\fresh.txt)"));
}

TEST(CopyFromPackage, TheRefusalNamesTheSource) {
  FileMachine given({.strict = true});
  given.Call(CopyFromPackage, {"copy", R"(..\Outside.txt)", R"(C:\Korvo\fresh.txt)"});
  EXPECT_THAT(given.window.boxes,
              ElementsAre(HasSubstr(R"(source outside the package folder: ..\Outside.txt)")));
}

}  // namespace
}  // namespace zent
