#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/FakeSystemInfo.h"
#include "fakes/MemoryFileSystem.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::MemoryFileSystem;

struct ExistsCase {
  const char* what;
  const char* path;
  bool exists;
};

MemoryFileSystem FilesOfEachKind() {
  MemoryFileSystem files;
  files.PutFile(R"(C:\Korvo\Korvo.exe)", "x");
  files.PutFile(R"(C:\Korvo\readonly.txt)", "", kAttributeReadOnly);
  files.PutFile(R"(C:\Korvo\hidden.txt)", "", kAttributeHidden);
  files.PutFile(R"(C:\Korvo\system.txt)", "", kAttributeSystem);
  files.PutFolder(R"(C:\Korvo\Data.old)");
  files.SetCurrentFolder(R"(C:\Korvo)");
  return files;
}

constexpr ExistsCase kFileCases[] = {
    {"a file", R"(C:\Korvo\Korvo.exe)", true},
    {"in any case", R"(c:\KORVO\korvo.EXE)", true},
    {"a read-only file", R"(C:\Korvo\readonly.txt)", true},
    {"a hidden file", R"(C:\Korvo\hidden.txt)", true},
    {"a system file", R"(C:\Korvo\system.txt)", true},
    {"by its name in the current folder", "Korvo.exe", true},
    {"a wildcard that a file matches", R"(C:\Korvo\*.exe)", true},
    {"a wildcard that no file matches", R"(C:\Korvo\*.dll)", false},
    {"a wildcard that a folder alone matches", R"(C:\Korvo\*.old)", false},
    {"a folder", R"(C:\Korvo\Data.old)", false},
    {"a folder with a backslash", R"(C:\Korvo\)", false},
    {"a missing file", R"(C:\Korvo\none.txt)", false},
    {"a missing folder", R"(C:\None\Korvo.exe)", false},
    {"a blank path", "  ", false},
    {"an empty path", "", false},
};

TEST(FileExists, FindsAFileOfAnyAttribute) {
  MemoryFileSystem files = FilesOfEachKind();
  for (const ExistsCase& row : kFileCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(FileExists(files, row.path), row.exists);
  }
}

constexpr ExistsCase kPlainFileCases[] = {
    {"a file", R"(C:\Korvo\Korvo.exe)", true},
    {"a read-only file", R"(C:\Korvo\readonly.txt)", true},
    {"a hidden file", R"(C:\Korvo\hidden.txt)", false},
    {"a system file", R"(C:\Korvo\system.txt)", false},
    {"a folder", R"(C:\Korvo\Data.old)", false},
    {"a wildcard that a plain file matches", R"(C:\Korvo\*.txt)", true},
    {"a wildcard that a hidden file alone matches", R"(C:\Korvo\hid*)", false},
    {"a missing file", R"(C:\Korvo\none.txt)", false},
    {"a missing folder", R"(C:\None\Korvo.exe)", false},
    {"a blank path", "  ", false},
};

TEST(PlainFileExists, FindsWhatADirectoryLookupFinds) {
  MemoryFileSystem files = FilesOfEachKind();
  for (const ExistsCase& row : kPlainFileCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(PlainFileExists(files, row.path), row.exists);
  }
}

constexpr ExistsCase kFolderCases[] = {
    {"a folder", R"(C:\Korvo)", true},
    {"with a backslash", R"(C:\Korvo\)", true},
    {"with a slash", "C:/Korvo/", true},
    {"with two backslashes", R"(C:\Korvo\\)", true},
    {"a folder whose name has a dot", R"(C:\Korvo\Data.old\)", true},
    {"the root of a drive", R"(C:\)", true},
    {"a missing drive", R"(Q:\)", false},
    {"a missing folder", R"(C:\None\)", false},
    {"a file", R"(C:\Korvo\Korvo.exe)", false},
    {"a file with a backslash", R"(C:\Korvo\Korvo.exe\)", false},
    {"a wildcard", R"(C:\Korv*)", false},
    {"a blank path", "  ", false},
    {"an empty path", "", false},
};

TEST(FolderExists, ToleratesASeparatorAtTheEnd) {
  MemoryFileSystem files = FilesOfEachKind();
  for (const ExistsCase& row : kFolderCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(FolderExists(files, row.path), row.exists);
  }
}

TEST(KillFile, DeletesOneFile) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\K\a.txt)", "");
  files.PutFile(R"(C:\K\b.txt)", "");

  EXPECT_EQ(KillFile(files, R"(C:\K\a.txt)"), 0);

  EXPECT_THAT(files.AllFiles(), ElementsAre(R"(C:\K\b.txt)"));
}

TEST(KillFile, DeletesEveryFileThatMatches) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\K\a.tmp)", "");
  files.PutFile(R"(C:\K\B.TMP)", "");
  files.PutFile(R"(C:\K\a.txt)", "");
  files.PutFile(R"(C:\K\Data.tmp\c.tmp)", "");

  EXPECT_EQ(KillFile(files, "C:/K/*.tmp"), 0);

  EXPECT_THAT(files.AllFiles(), ElementsAre(R"(C:\K\a.txt)", R"(C:\K\Data.tmp\c.tmp)"));
}

TEST(KillFile, LeavesWhatAPlainLookupDoesNotFind) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\K\hidden.tmp)", "", kAttributeHidden);
  files.PutFile(R"(C:\K\system.tmp)", "", kAttributeSystem);
  files.PutFolder(R"(C:\K\folder.tmp)");

  EXPECT_EQ(KillFile(files, R"(C:\K\*.tmp)"), 0);
  EXPECT_EQ(KillFile(files, R"(C:\K\hidden.tmp)"), 0);
  EXPECT_EQ(KillFile(files, R"(C:\K\folder.tmp)"), 0);

  EXPECT_TRUE(files.Exists(R"(C:\K\hidden.tmp)"));
  EXPECT_TRUE(files.Exists(R"(C:\K\system.tmp)"));
  EXPECT_TRUE(files.Exists(R"(C:\K\folder.tmp)"));
}

TEST(KillFile, GoesOnPastAFileThatItCannotDelete) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\K\a.tmp)", "");
  files.HoldOpen(R"(C:\K\a.tmp)");
  files.PutFile(R"(C:\K\b.tmp)", "", kAttributeReadOnly);
  files.PutFile(R"(C:\K\c.tmp)", "");

  EXPECT_EQ(KillFile(files, R"(C:\K\*.tmp)"), kPathFileAccess) << "the last error, not the first";

  EXPECT_THAT(files.AllFiles(), ElementsAre(R"(C:\K\a.tmp)", R"(C:\K\b.tmp)"));
  EXPECT_EQ(KillFile(files, R"(C:\K\a.tmp)"), kPermissionDenied);
}

TEST(KillFile, TakesARelativePathAsItStands) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\K\a.txt)", "");
  files.PutFile(R"(C:\a.txt)", "");
  files.SetCurrentFolder(R"(C:\K)");

  EXPECT_EQ(KillFile(files, "a.txt"), 0);

  EXPECT_THAT(files.AllFiles(), ElementsAre(R"(C:\a.txt)"));
}

TEST(KillFile, DoesNothingWhereNothingMatches) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\K\a.txt)", "");
  for (const char* path : {R"(C:\K\none.txt)", R"(C:\K\*.tmp)", R"(C:\None\a.txt)", "", "  "}) {
    SCOPED_TRACE(path);
    EXPECT_EQ(KillFile(files, path), 0);
  }
  EXPECT_THAT(files.log().changes(), IsEmpty());
}

TEST(KillFile, HandsBackTheErrorOfTheLookup) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\K\a.txt)", "");
  files.log().FailWhere("Find", StandardError(kDiskNotReady));
  EXPECT_EQ(KillFile(files, R"(C:\K\a.txt)"), kDiskNotReady);
}

TEST(SystemFolders, EndWithABackslash) {
  testing::FakeSystemInfo system;
  system.windows_folder = R"(C:\WINNT)";
  system.system_folder = R"(C:\WINNT\system32)";
  system.temp_folder = R"(D:\Temp)";
  EXPECT_EQ(GetWindowsDir(system), R"(C:\WINNT\)");
  EXPECT_EQ(GetSystemDir(system), R"(C:\WINNT\system32\)");
  EXPECT_EQ(GetTempDir(system), R"(D:\Temp\)");
}

}  // namespace
}  // namespace zent
