#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fileops/DeleteAndRename.h"
#include "fileops/FileMachine.h"

namespace zent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using testing::ErrorBox;
using testing::ExpectCases;
using testing::FileMachine;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

// --- del ---

TEST(DeleteFiles, DeletesWhatMatches) {
  ExpectCases(DeleteFiles, {
                               {"a file behind a macro",
                                {"del", R"($(apppath)\plain.txt)"},
                                {R"(Deleting C:\Korvo\plain.txt)"},
                                {},
                                Outcome::Done,
                                R"(C:\Korvo\plain.txt)",
                                "-"},
                               {"blanks around the path do not count",
                                {"del", R"(  C:\Korvo\plain.txt )"},
                                {R"(Deleting C:\Korvo\plain.txt)"},
                                {},
                                Outcome::Done,
                                R"(C:\Korvo\plain.txt)",
                                "-"},
                               {"a read-only file",
                                {"del", R"(C:\Korvo\readonly.txt)"},
                                {R"(Deleting C:\Korvo\readonly.txt)"},
                                {},
                                Outcome::Done,
                                R"(C:\Korvo\readonly.txt)",
                                "-"},
                               {"a hidden file, whose attributes are cleared first",
                                {"del", R"(C:\Korvo\hidden.txt)"},
                                {R"(Deleting C:\Korvo\hidden.txt)"},
                                {},
                                Outcome::Done,
                                R"(C:\Korvo\hidden.txt)",
                                "-"},
                               {"nothing of that name",
                                {"del", R"(C:\Korvo\nosuch.txt)"},
                                {R"(Deleting C:\Korvo\nosuch.txt)"},
                                {},
                                Outcome::Skipped},
                               {"no folder of that name",
                                {"del", R"(C:\nosuch\a.txt)"},
                                {R"(Deleting C:\nosuch\a.txt)"},
                                {},
                                Outcome::Skipped},
                               {"a folder is no file",
                                {"del", R"(C:\Korvo\folder)"},
                                {R"(Deleting C:\Korvo\folder)"},
                                {},
                                Outcome::Skipped},
                               {"a macro alone is a folder and deletes nothing",
                                {"del", "$(apppath)"},
                                {R"(Deleting C:\Korvo\)"},
                                {},
                                Outcome::Skipped,
                                R"(C:\Korvo\plain.txt)",
                                "old"},
                               {"a file in use stays, without a box",
                                {"del", R"(C:\Korvo\held.txt)"},
                                {R"(Deleting C:\Korvo\held.txt)"},
                                {},
                                Outcome::Failed,
                                R"(C:\Korvo\held.txt)",
                                "old"},
                               {"a blank path", {"del", " "}, {"Deleting "}, {}, Outcome::Skipped},
                               {"a missing token",
                                {"del"},
                                {},
                                {ErrorBox("Error deleting ", kSubscriptOutOfRange)},
                                Outcome::Failed},
                           });
}

TEST(DeleteFiles, AWildcardDeletesEveryPlainMatchAndGoesOnPastTheRest) {
  FileMachine given;
  given.machine.files.PutFile(R"(C:\Korvo\a.log)", "");
  given.machine.files.PutFile(R"(C:\Korvo\held.log)", "");
  given.machine.files.HoldOpen(R"(C:\Korvo\held.log)");
  given.machine.files.PutFile(R"(C:\Korvo\readonly.log)", "", kAttributeReadOnly);
  given.machine.files.PutFile(R"(C:\Korvo\z.log)", "");
  given.machine.files.PutFile(R"(C:\Korvo\z.logx)", "");
  const CommandRecord record = given.Call(DeleteFiles, {"del", R"($(apppath)\*.log)"});
  EXPECT_THAT(given.messages(), ElementsAre(R"(Deleting C:\Korvo\*.log)"));
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_FALSE(given.run.state.ErrorOccurred);
  EXPECT_FALSE(given.machine.files.Exists(R"(C:\Korvo\a.log)"));
  EXPECT_FALSE(given.machine.files.Exists(R"(C:\Korvo\z.log)"));
  EXPECT_TRUE(given.machine.files.Exists(R"(C:\Korvo\z.logx)"));
  EXPECT_TRUE(given.machine.files.Exists(R"(C:\Korvo\held.log)"));
  EXPECT_TRUE(given.machine.files.Exists(R"(C:\Korvo\readonly.log)"))
      << "a wildcard clears no attributes";
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_THAT(record.reason, HasSubstr(R"(not deleted: C:\Korvo\*.log)"));
}

TEST(DeleteFiles, DeletesTenThousandFiles) {
  FileMachine given;
  for (int i = 0; i < 10'000; ++i) {
    given.machine.files.PutFile(R"(D:\Data\)" + std::to_string(i) + ".tmp", "");
  }
  const CommandRecord record = given.Call(DeleteFiles, {"del", R"($(datapath)\*.tmp)"});
  EXPECT_EQ(record.outcome, Outcome::Done);
  EXPECT_THAT(given.machine.files.AllFiles(), Not(Contains(HasSubstr(".tmp"))));
}

/// A system that refuses to touch the attributes of an open file.
struct LockedAttributes : FileMachine {
  LockedAttributes() {
    machine.files.log().FailWhere("SetAttributes", StandardError(kPermissionDenied));
  }
};

TEST(DeleteFiles, AsksAboutAFileWhoseAttributesAreInUse) {
  LockedAttributes given;
  const CommandRecord record = given.Call(DeleteFiles, {"del", R"($(apppath)\plain.txt)"});
  EXPECT_THAT(given.window.boxes,
              ElementsAre(ErrorBox(R"(Error deleting C:\Korvo\plain.txt)", kPermissionDenied)));
  EXPECT_EQ(given.window.questions[0].buttons, BoxButtons::RetryCancel);
  EXPECT_EQ(given.window.questions[0].icon, BoxIcon::Information);
  EXPECT_TRUE(given.run.state.ErrorOccurred) << "Cancel fails";
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_TRUE(given.machine.files.Exists(R"(C:\Korvo\plain.txt)"));
}

TEST(DeleteFiles, RetryDeletesOnceMoreAndEnds) {
  for (const char* name : {"plain.txt", "held.txt"}) {
    SCOPED_TRACE(name);
    LockedAttributes given;
    given.window.answers = {Answer::Retry, Answer::Retry};
    const bool held = std::string_view(name) == "held.txt";
    const CommandRecord record =
        given.Call(DeleteFiles, {"del", std::string(R"(C:\Korvo\)") + name});
    EXPECT_EQ(given.window.boxes.size(), 1U);
    EXPECT_EQ(given.machine.files.Exists(std::string(R"(C:\Korvo\)") + name), held);
    EXPECT_FALSE(given.run.state.ErrorOccurred);
    EXPECT_EQ(record.outcome, held ? Outcome::Failed : Outcome::Done);
  }
}

TEST(DeleteMatches, QuietShowsNoBox) {
  LockedAttributes given;
  DeleteMatches(given.run, R"(C:\Korvo\plain.txt)", true);
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_TRUE(given.machine.files.Exists(R"(C:\Korvo\plain.txt)"));
}

struct RelativeCase {
  const char* what;
  const char* argument;
  bool risky;
};

constexpr RelativeCase kRelativeCases[] = {
    {"a wildcard alone", "*.txt", true},
    {"a wildcard below a folder", R"(Sub\*.txt)", true},
    {"a question mark", "new.tx?", true},
    {"a macro that stands for nothing", R"($(nosuch)\*.txt)", true},
    {"a relative path without a wildcard", "new.txt", false},
    {"a wildcard behind a macro", R"($(apppath)\*.txt)", false},
    {"a wildcard behind a drive", R"(C:\Korvo\*.txt)", false},
};

TEST(DeleteFiles, AWildcardOnARelativePathIsAWarning) {
  for (const RelativeCase& row : kRelativeCases) {
    SCOPED_TRACE(row.what);
    FileMachine given;
    given.machine.files.Release(R"(C:\Korvo\held.txt)");
    for (const char* name : {"readonly.txt", "hidden.txt", "system.txt"}) {
      given.machine.files.PutFile(std::string(R"(C:\Korvo\)") + name, "old");
    }
    const CommandRecord record = given.Call(DeleteFiles, {"del", row.argument});
    EXPECT_EQ(record.outcome, row.risky ? Outcome::Warned : Outcome::Done) << record.reason;
    EXPECT_THAT(given.messages(), ElementsAre(HasSubstr("Deleting ")));
  }
}

TEST(DeleteFiles, AStrictRunRefusesAWildcardOnARelativePath) {
  for (const RelativeCase& row : kRelativeCases) {
    SCOPED_TRACE(row.what);
    FileMachine given({.strict = true});
    given.Call(DeleteFiles, {"del", row.argument});
    EXPECT_EQ(given.run.Refused(), row.risky);
    EXPECT_EQ(given.machine.files.log().changes().empty(), row.risky);
    EXPECT_EQ(given.messages().empty(), row.risky);
  }
}

// --- ren, cren ---

constexpr const char* kRenaming = R"(Renaming C:\Korvo\plain.txt to C:\Korvo\other.txt)";

TEST(RenameCommand, RenamesAFile) {
  ExpectCases(RenameCommand,
              {
                  {"ren to a free name",
                   {"ren", R"($(apppath)\plain.txt)", R"($(apppath)\other.txt)"},
                   {kRenaming},
                   {},
                   Outcome::Done,
                   R"(C:\Korvo\other.txt)",
                   "old"},
                  {"cren to a free name",
                   {"cren", R"($(apppath)\plain.txt)", R"($(apppath)\other.txt)"},
                   {kRenaming},
                   {},
                   Outcome::Done,
                   R"(C:\Korvo\plain.txt)",
                   "-"},
                  {"to another drive, keeping the name",
                   {"ren", R"($(apppath)\plain.txt)", "$(datapath)"},
                   {R"(Renaming C:\Korvo\plain.txt to D:\Data\plain.txt)"},
                   {},
                   Outcome::Done,
                   R"(D:\Data\plain.txt)",
                   "old"},
                  {"ren of a missing file is silent",
                   {"ren", R"(C:\Korvo\nosuch.txt)", R"(C:\Korvo\other.txt)"},
                   {},
                   {},
                   Outcome::Skipped},
                  {"ren of a hidden file is silent",
                   {"ren", R"(C:\Korvo\hidden.txt)", R"(C:\Korvo\other.txt)"},
                   {},
                   {},
                   Outcome::Skipped},
                  {"ren of a folder is silent",
                   {"ren", R"(C:\Korvo\folder)", R"(C:\Korvo\other)"},
                   {},
                   {},
                   Outcome::Skipped},
                  {"ren onto an existing file shows its message and fails",
                   {"ren", R"(C:\Korvo\plain.txt)", R"(C:\Korvo\held.txt)"},
                   {R"(Renaming C:\Korvo\plain.txt to C:\Korvo\held.txt)"},
                   {ErrorBox(R"(Error Renaming C:\Korvo\plain.txt)", kFileAlreadyExists)},
                   Outcome::Failed,
                   R"(C:\Korvo\plain.txt)",
                   "old"},
                  {"ren onto a read-only file fails as well",
                   {"ren", R"(C:\Korvo\plain.txt)", R"(C:\Korvo\readonly.txt)"},
                   {R"(Renaming C:\Korvo\plain.txt to C:\Korvo\readonly.txt)"},
                   {ErrorBox(R"(Error Renaming C:\Korvo\plain.txt)", kFileAlreadyExists)},
                   Outcome::Failed},
                  {"cren onto an existing file does and shows nothing",
                   {"CREN", R"(C:\Korvo\plain.txt)", R"(C:\Korvo\readonly.txt)"},
                   {},
                   {},
                   Outcome::Skipped,
                   R"(C:\Korvo\plain.txt)",
                   "old"},
                  {"cren onto a hidden file goes on, and fails",
                   {"cren", R"(C:\Korvo\plain.txt)", R"(C:\Korvo\hidden.txt)"},
                   {R"(Renaming C:\Korvo\plain.txt to C:\Korvo\hidden.txt)"},
                   {ErrorBox(R"(Error Renaming C:\Korvo\plain.txt)", kFileAlreadyExists)},
                   Outcome::Failed},
                  {"a file in use is reported like any error",
                   {"ren", R"($(apppath)\held.txt)", R"(C:\Korvo\other.txt)"},
                   {R"(Renaming C:\Korvo\held.txt to C:\Korvo\other.txt)"},
                   {ErrorBox(R"(Error Renaming C:\Korvo\held.txt)", kPermissionDenied)},
                   Outcome::Failed},
                  {"into a missing folder",
                   {"ren", R"(C:\Korvo\plain.txt)", R"(C:\nosuch\plain.txt)"},
                   {R"(Renaming C:\Korvo\plain.txt to C:\nosuch\plain.txt)"},
                   {ErrorBox(R"(Error Renaming C:\Korvo\plain.txt)", kPathNotFound)},
                   Outcome::Failed},
                  {"a missing new name",
                   {"ren", "x"},
                   {},
                   {ErrorBox("Error Renaming x", kSubscriptOutOfRange)},
                   Outcome::Failed},
                  {"both names missing",
                   {"cren"},
                   {},
                   {ErrorBox("Error Renaming ", kSubscriptOutOfRange)},
                   Outcome::Failed},
              });
}

TEST(RenameCommand, ClearsTheAttributesOfTheNewNameFirst) {
  FileMachine given;
  given.Call(RenameCommand, {"ren", R"(C:\Korvo\plain.txt)", R"(C:\Korvo\readonly.txt)"});
  EXPECT_THAT(given.machine.files.log().changes(),
              ElementsAre(R"(SetAttributes C:\Korvo\readonly.txt)",
                          R"(Move C:\Korvo\plain.txt > C:\Korvo\readonly.txt)"));
}

TEST(RenameCommand, ChangesTheCaseOfAName) {
  FileMachine given;
  given.Call(RenameCommand, {"ren", R"(C:\Korvo\plain.txt)", R"(C:\Korvo\Plain.TXT)"});
  EXPECT_THAT(given.machine.files.AllFiles(), Contains(R"(C:\Korvo\Plain.TXT)"));
}

// --- mkdr ---

TEST(MakeFolder, MakesTheLastLevel) {
  ExpectCases(MakeFolder,
              {
                  {"a missing folder",
                   {"mkdr", R"($(apppath)\Bin)"},
                   {R"(Creating Folder C:\Korvo\Bin)"},
                   {}},
                  {"a backslash behind it",
                   {"mkdr", R"($(apppath)\Bin\)"},
                   {R"(Creating Folder C:\Korvo\Bin\)"},
                   {}},
                  {"an existing folder",
                   {"mkdr", R"($(apppath)\folder)"},
                   {R"(Creating Folder C:\Korvo\folder)"},
                   {},
                   Outcome::Skipped},
                  {"an existing folder with a backslash behind it",
                   {"mkdr", R"($(apppath)\folder\)"},
                   {R"(Creating Folder C:\Korvo\folder\)"},
                   {},
                   Outcome::Skipped},
                  {"a macro alone",
                   {"mkdr", "$(apppath)"},
                   {R"(Creating Folder C:\Korvo\)"},
                   {},
                   Outcome::Skipped},
                  {"a missing parent; the box has the text as written",
                   {"mkdr", R"($(apppath)\A\B)"},
                   {R"(Creating Folder C:\Korvo\A\B)"},
                   {ErrorBox(R"(Error creating folder $(apppath)\A\B)", kPathNotFound)},
                   Outcome::Failed},
                  {"a file of that name",
                   {"mkdr", R"(C:\Korvo\plain.txt)"},
                   {R"(Creating Folder C:\Korvo\plain.txt)"},
                   {ErrorBox(R"(Error creating folder C:\Korvo\plain.txt)", kPathFileAccess)},
                   Outcome::Failed,
                   R"(C:\Korvo\plain.txt)",
                   "old"},
                  {"a name that no folder can have",
                   {"mkdr", R"(C:\Korvo\a?b)"},
                   {R"(Creating Folder C:\Korvo\a?b)"},
                   {ErrorBox(R"(Error creating folder C:\Korvo\a?b)", kBadFileName)},
                   Outcome::Failed},
                  {"a missing token",
                   {"mkdr"},
                   {},
                   {ErrorBox("Error creating folder ", kSubscriptOutOfRange)},
                   Outcome::Failed},
              });
}

TEST(MakeFolder, MakesNothingBesideTheFolder) {
  FileMachine given;
  given.Call(MakeFolder, {"mkdr", R"($(apppath)\Bin)"});
  EXPECT_THAT(given.machine.files.log().changes(), ElementsAre(R"(CreateFolder C:\Korvo\Bin)"));
}

}  // namespace
}  // namespace zent
