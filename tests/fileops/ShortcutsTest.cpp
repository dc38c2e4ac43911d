#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/run/RunBuilder.h"
#include "fileops/Shortcuts.h"
#include "lib/RegFuncs.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::RunBuilder;

constexpr const char* kDesktop = R"(C:\users\anna\Desktop)";
constexpr const char* kStartMenu = R"(C:\users\anna\Roaming\Start Menu)";
constexpr const char* kPrograms = R"(C:\users\anna\Roaming\Start Menu\Programs)";

void NameFolder(RunBuilder& given, const char* value, const char* path) {
  given.machine.registry.PutText(KeyHandle::CurrentUser, kShellFoldersKey, value, path);
}

/// A machine that names its shell folders, with the program that shortcuts lead to.
class Shortcuts : public ::testing::Test {
 protected:
  Shortcuts() {
    NameFolder(given_, "Desktop", kDesktop);
    NameFolder(given_, "Start Menu", kStartMenu);
    NameFolder(given_, "Programs", kPrograms);
    given_.machine.files.PutFile(R"(C:\Korvo\Korvo.exe)", "MZ");
  }

  std::vector<std::string> LinkFiles() const {
    std::vector<std::string> files;
    for (const auto& created : given_.machine.links.created) files.push_back(created.file);
    return files;
  }

  RunBuilder given_;
};

TEST_F(Shortcuts, CslkPutsOneIntoTheProgramGroup) {
  const CommandRecord record =
      given_.Call(CreateGroupShortcut, {"cslk", "Korvo", R"($(apppath)\Korvo.exe)"});
  EXPECT_THAT(given_.messages(), ElementsAre("Creating Shell Link Korvo"));
  EXPECT_THAT(LinkFiles(), ElementsAre(kPrograms + std::string(R"(\Zent\Korvo.lnk)")));
  const ShellLink& link = given_.machine.links.created[0].link;
  EXPECT_EQ(link.target, R"(C:\Korvo\Korvo.exe)");
  EXPECT_EQ(link.arguments, "");
  EXPECT_EQ(link.working_folder, R"(C:\Korvo)");
  EXPECT_EQ(record.outcome, Outcome::Done);
}

TEST_F(Shortcuts, CsldLeavesTwoOfTheSameName) {
  const CommandRecord record =
      given_.Call(CreateDesktopShortcut, {"csld", "Korvo 3.6", R"($(apppath)\Korvo.exe)"});
  EXPECT_THAT(given_.messages(), ElementsAre("Creating desktop shortcut to Korvo 3.6"));
  EXPECT_THAT(LinkFiles(), ElementsAre(kDesktop + std::string(R"(\Korvo 3.6.lnk)"),
                                       kStartMenu + std::string(R"(\Korvo 3.6.lnk)")));
  EXPECT_EQ(record.outcome, Outcome::Done);
}

TEST_F(Shortcuts, ReplaceOnesOfThatName) {
  given_.machine.files.PutFile(kDesktop + std::string(R"(\Korvo.lnk)"), "old");
  given_.Call(CreateDesktopShortcut, {"csld", "Korvo", R"($(apppath)\Korvo.exe)"});
  EXPECT_EQ(given_.machine.files.Contents(kDesktop + std::string(R"(\Korvo.lnk)")),
            R"(link to C:\Korvo\Korvo.exe)");
}

TEST_F(Shortcuts, ARelativeTargetLiesInThePackage) {
  given_.Call(CreateGroupShortcut, {"cslk", "Read me", "readme.txt"});
  ASSERT_EQ(given_.machine.links.created.size(), 1U);
  EXPECT_EQ(given_.machine.links.created[0].link.target, R"(D:\Package\readme.txt)");
}

TEST_F(Shortcuts, AMissingTargetIsAWarning) {
  const CommandRecord record =
      given_.Call(CreateGroupShortcut, {"cslk", "Korvo", R"(C:\Korvo\none.exe)"});
  EXPECT_EQ(LinkFiles().size(), 1U);
  EXPECT_EQ(record.outcome, Outcome::Warned);
  EXPECT_EQ(record.reason, R"(the target of the shortcut is missing: C:\Korvo\none.exe)");
  EXPECT_FALSE(given_.run.state.ErrorOccurred);
}

TEST_F(Shortcuts, AFolderIsATargetToo) {
  EXPECT_EQ(given_.Call(CreateGroupShortcut, {"cslk", "Folder", R"(C:\Korvo)"}).outcome,
            Outcome::Done);
}

TEST_F(Shortcuts, OneThatCannotBeMadeGoesUnnoticedButRecorded) {
  given_.machine.files.log().FailWhere("Write", StandardError(kDiskFull));
  const CommandRecord record =
      given_.Call(CreateDesktopShortcut, {"csld", "Korvo", R"($(apppath)\Korvo.exe)"});
  EXPECT_THAT(given_.messages(), ElementsAre("Creating desktop shortcut to Korvo"));
  EXPECT_THAT(given_.window.boxes, IsEmpty());
  EXPECT_FALSE(given_.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_EQ(record.reason, R"(no shortcut in $(Programs)\..\..\Desktop: Disk full; )"
                           R"(no shortcut in $(Programs)\..: Disk full)");
}

TEST_F(Shortcuts, TheStartMenuGetsItsOwnWhenTheDesktopDoesNot) {
  given_.machine.files.log().FailWhere(R"(Write C:\users\anna\Desktop)",
                                       StandardError(kPathFileAccess));
  const CommandRecord record =
      given_.Call(CreateDesktopShortcut, {"csld", "Korvo", R"($(apppath)\Korvo.exe)"});
  EXPECT_THAT(LinkFiles(), ElementsAre(kStartMenu + std::string(R"(\Korvo.lnk)")));
  EXPECT_EQ(record.outcome, Outcome::Failed);
}

TEST_F(Shortcuts, AnUnusableNameIsRecorded) {
  for (const char* name : {"", " ", R"(..\Korvo)", "a/b", "Korvo?", "C:Korvo"}) {
    SCOPED_TRACE(name);
    const CommandRecord record =
        given_.Call(CreateGroupShortcut, {"cslk", name, R"($(apppath)\Korvo.exe)"});
    EXPECT_EQ(record.outcome, Outcome::Failed);
    EXPECT_THAT(LinkFiles(), IsEmpty());
  }
}

struct FewTokensCase {
  const char* what;
  Status (*handler)(UpdateRun&, const TokenList&);
  TokenList tokens;
  const char* headline;
};

TEST_F(Shortcuts, TooFewTokensIsAReportedError9) {
  const std::vector<FewTokensCase> rows = {
      {"cslk alone", CreateGroupShortcut, {"cslk"}, "Error Creating Shell Link "},
      {"cslk without a target",
       CreateGroupShortcut,
       {"cslk", "Korvo"},
       "Error Creating Shell Link Korvo"},
      {"csld alone", CreateDesktopShortcut, {"csld"}, "Error Creating Shell Link "},
      {"csld without a target",
       CreateDesktopShortcut,
       {"csld", "Korvo"},
       "Error Creating Shell Link Korvo"},
  };
  for (const FewTokensCase& row : rows) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    const CommandRecord record = given.Call(row.handler, row.tokens);
    EXPECT_THAT(given.window.boxes,
                ElementsAre(row.headline +
                            std::string("\r\nDescription: Subscript out of range\r\nNumber: 9")));
    EXPECT_EQ(given.window.questions[0].icon, BoxIcon::Information);
    EXPECT_THAT(given.messages(), IsEmpty());
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_EQ(record.outcome, Outcome::Failed);
  }
}

}  // namespace
}  // namespace zent
