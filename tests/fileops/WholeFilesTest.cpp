#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "fileops/Backup.h"
#include "fileops/CopyAndRegister.h"
#include "fileops/CopyCommands.h"
#include "fileops/DeleteAndRename.h"
#include "fileops/FileMachine.h"
#include "fileops/VersionedCopy.h"

/// Whatever change of the machine fails, every file is whole, old or new, and none is lost.
namespace zent {
namespace {

using testing::FileMachine;

struct FaultCase {
  const char* what;
  Status (*handler)(UpdateRun&, const TokenList&);
  std::vector<std::string> tokens;
  bool loaded = false;   ///< the target is in use as a library
  bool deletes = false;  ///< the old contents may go
};

const FaultCase kFaultCases[] = {
    {"copy", CopyFromPackage, {"copy", "new.txt", R"(C:\Korvo\target.txt)"}},
    {"copy of a file in use", CopyFromPackage, {"copy", "new.txt", R"(C:\Korvo\target.txt)"}, true},
    {"copyl", CopyOnMachine, {"copyl", R"(D:\Package\new.txt)", R"(C:\Korvo\target.txt)"}},
    {"cc", CopyFromPackageIfMissing, {"cc", "new.txt", R"(C:\Korvo\fresh.txt)"}},
    {"ccl", CopyOnMachineIfMissing, {"ccl", R"(D:\Package\new.txt)", R"(C:\Korvo\fresh.txt)"}},
    {"cr", CopyAndRegister, {"cr", "new.txt", R"(C:\Korvo\target.txt)"}},
    {"crie", CopyAndRegister, {"crie", "new.txt", R"(C:\Korvo\target.txt)"}},
    {"a version-compared copy",
     CopyByVersion,
     {"CopyRegIfNotSameVersion", "versioned.txt", R"(C:\Korvo\target.txt)"}},
    {"a version-compared copy over a file in use",
     CopyByVersion,
     {"CopyRegIfNotSameVersion", "versioned.txt", R"(C:\Korvo\target.txt)"},
     true},
    {"bkpf", BackUpFile, {"bkpf", R"(C:\Korvo\target.txt)"}},
    {"ren", RenameCommand, {"ren", R"(C:\Korvo\target.txt)", R"(C:\Korvo\fresh.txt)"}},
    {"cren", RenameCommand, {"cren", R"(C:\Korvo\target.txt)", R"(D:\Data\fresh.txt)"}},
    {"del", DeleteFiles, {"del", R"(C:\Korvo\target.txt)"}, false, true},
    {"mkdr", MakeFolder, {"mkdr", R"(C:\Korvo\Bin)"}},
};

/// The contents of all files of the machine, and how many there are of each.
std::multiset<std::string> AllContents(const FileMachine& given) {
  std::multiset<std::string> contents;
  for (const std::string& path : given.machine.files.AllFiles()) {
    contents.insert(given.machine.files.Contents(path).value_or(""));
  }
  return contents;
}

/// Runs a row with its `nth` change failing; false when it makes fewer changes.
bool RunWithFault(const FaultCase& row, std::size_t nth, int error) {
  FileMachine given;
  testing::MemoryFileSystem& files = given.machine.files;
  files.PutFile(R"(D:\Package\versioned.txt)", testing::Library("2", "new"));
  files.PutFile(R"(C:\Korvo\target.txt)", "the old target");
  if (row.loaded) files.HoldLoaded(R"(C:\Korvo\target.txt)");
  const std::multiset<std::string> before = AllContents(given);
  given.window.answers = {Answer::Retry, Answer::Cancel};

  files.log().FailChange(nth, StandardError(error));
  given.Call(row.handler, TokenList(row.tokens));

  const std::set<std::string> known(before.begin(), before.end());
  for (const std::string& path : files.AllFiles()) {
    EXPECT_TRUE(known.contains(files.Contents(path).value_or(""))) << path << " is not whole";
  }
  const std::multiset<std::string> after = AllContents(given);
  const bool replaced = files.Contents(R"(C:\Korvo\target.txt)").value_or("").ends_with("new");
  EXPECT_TRUE(after.contains("the old target") || row.deletes || replaced);
  return files.log().changes().size() >= nth;
}

TEST(FileCommands, LeaveEveryFileWholeWhateverChangeFails) {
  for (const FaultCase& row : kFaultCases) {
    for (const int error : {kDiskFull, kPermissionDenied, kPathFileAccess, kDeviceIoError}) {
      for (std::size_t nth = 1; nth < 20; ++nth) {
        SCOPED_TRACE(std::string(row.what) + ", change " + std::to_string(nth) + ", error " +
                     std::to_string(error));
        if (!RunWithFault(row, nth, error)) break;
      }
    }
  }
}

TEST(FileCommands, AReplacementByRenamingAlwaysLeavesAFileOfThatName) {
  for (std::size_t nth = 1; nth <= 4; ++nth) {
    SCOPED_TRACE(nth);
    FileMachine given;
    testing::MemoryFileSystem& files = given.machine.files;
    files.PutFile(R"(D:\Package\versioned.txt)", testing::Library("2", "new"));
    files.PutFile(R"(C:\Korvo\target.txt)", "the old target");
    files.HoldLoaded(R"(C:\Korvo\target.txt)");
    files.log().FailChange(nth, StandardError(kDiskFull));
    given.Call(CopyByVersion,
               {"CopyRegIfNotSameVersion", "versioned.txt", R"(C:\Korvo\target.txt)"});
    EXPECT_TRUE(files.Exists(R"(C:\Korvo\target.txt)"));
    const bool is_new = files.Contents(R"(C:\Korvo\target.txt)") != "the old target";
    EXPECT_EQ(given.run.state.RebootComputer, is_new);
    EXPECT_EQ(given.run.state.ErrorOccurred, !is_new);
  }
}

}  // namespace
}  // namespace zent
