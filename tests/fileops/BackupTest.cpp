#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fileops/Backup.h"
#include "fileops/FileMachine.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::ErrorBox;
using testing::ExpectCases;
using testing::FileMachine;
using ::testing::HasSubstr;

// The clock of a FileMachine starts at this time.
constexpr const char* kBackup = R"(C:\Korvo\plain 2006-05-04 03-02-01.txt)";

TEST(BackUpFile, CopiesToATimeStampedNameBesideTheFile) {
  ExpectCases(BackUpFile,
              {
                  {"a file behind a macro",
                   {"bkpf", R"($(apppath)\plain.txt)"},
                   {"Backing up C:\\Korvo\\plain.txt\r\n    as "
                    "C:\\Korvo\\plain 2006-05-04 03-02-01.txt"},
                   {},
                   Outcome::Done,
                   kBackup,
                   "old"},
                  {"blanks around the path do not count",
                   {"bkpf", R"(  C:\Korvo\plain.txt )"},
                   {"Backing up C:\\Korvo\\plain.txt\r\n    as "
                    "C:\\Korvo\\plain 2006-05-04 03-02-01.txt"},
                   {},
                   Outcome::Done,
                   kBackup,
                   "old"},
                  {"a hidden file",
                   {"bkpf", R"(C:\Korvo\hidden.txt)"},
                   {"Backing up C:\\Korvo\\hidden.txt\r\n    as "
                    "C:\\Korvo\\hidden 2006-05-04 03-02-01.txt"},
                   {}},
                  {"a read-only file",
                   {"bkpf", R"(C:\Korvo\readonly.txt)"},
                   {"Backing up C:\\Korvo\\readonly.txt\r\n    as "
                    "C:\\Korvo\\readonly 2006-05-04 03-02-01.txt"},
                   {}},
                  {"a file that others only read",
                   {"bkpf", R"(C:\Korvo\held.txt)"},
                   {"Backing up C:\\Korvo\\held.txt\r\n    as "
                    "C:\\Korvo\\held 2006-05-04 03-02-01.txt"},
                   {}},
                  {"a missing file is silent",
                   {"bkpf", R"(C:\Korvo\nosuch.txt)"},
                   {},
                   {},
                   Outcome::Skipped},
                  {"a folder is no file", {"bkpf", R"(C:\Korvo\folder)"}, {}, {}, Outcome::Skipped},
                  {"a blank path is silent", {"bkpf", " "}, {}, {}, Outcome::Skipped},
                  {"a missing token",
                   {"bkpf"},
                   {},
                   {ErrorBox("Error Copying ", kSubscriptOutOfRange)},
                   Outcome::Failed},
              });
}

TEST(BackUpFile, AFileInUseIsReportedLikeAnyError) {
  FileMachine given;
  given.machine.files.HoldOpen(R"(C:\Korvo\plain.txt)", false);
  given.window.answers = {Answer::Retry};
  given.Call(BackUpFile, {"bkpf", R"($(apppath)\plain.txt)"});
  EXPECT_THAT(given.window.boxes,
              ElementsAre(ErrorBox(R"(Error Copying C:\Korvo\plain.txt)", kPermissionDenied)));
  EXPECT_EQ(given.window.questions[0].buttons, BoxButtons::Ok);
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

TEST(BackUpFile, WaitsForTheNextSecondRatherThanWriteOverABackup) {
  FileMachine given;
  given.machine.files.PutFile(kBackup, "first backup");
  given.machine.files.PutFolder(R"(C:\Korvo\plain 2006-05-04 03-02-02.txt)");
  given.Call(BackUpFile, {"bkpf", R"(C:\Korvo\plain.txt)"});
  EXPECT_EQ(given.machine.files.Contents(kBackup), "first backup");
  EXPECT_EQ(given.machine.files.Contents(R"(C:\Korvo\plain 2006-05-04 03-02-03.txt)"), "old");
  EXPECT_THAT(given.messages(), ElementsAre(HasSubstr("03-02-03.txt")));
}

TEST(BackUpFile, AHiddenBackupIsABackup) {
  FileMachine given;
  given.machine.files.PutFile(kBackup, "first backup", kAttributeHidden);
  given.Call(BackUpFile, {"bkpf", R"(C:\Korvo\plain.txt)"});
  EXPECT_EQ(given.machine.files.Contents(kBackup), "first backup");
}

}  // namespace
}  // namespace zent
