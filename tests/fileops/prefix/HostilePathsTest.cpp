#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fileops/Backup.h"
#include "fileops/CopyCommands.h"
#include "fileops/DeleteAndRename.h"
#include "fileops/FileMachine.h"
#include "fileops/prefix/PrefixRun.h"

/// Paths that lead where no command may go: nothing there is read, written or deleted.
namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::PrefixRun;
using ::testing::SizeIs;
using testing::TempFolder;

/// A machine with links that lead outside its drives, to a folder with one file.
struct LinkedRun : PrefixRun {
  LinkedRun() {
    outside.Put("secret.txt", "secret");
    disk.Link("Package/out", outside.path());
    disk.Link("Package/link.txt", outside.path() / "secret.txt");
    disk.Link("Korvo/out", outside.path());
    disk.Link("Korvo/link.txt", outside.path() / "secret.txt");
  }
  TempFolder outside;
};

struct LinkCase {
  const char* what;
  Status (*handler)(UpdateRun&, const TokenList&);
  std::vector<std::string> tokens;
};

const LinkCase kLinkCases[] = {
    {"a source behind a linked folder",
     CopyFromPackage,
     {"copy", R"(out\secret.txt)", R"(C:\Korvo\got.txt)"}},
    {"a linked source", CopyFromPackage, {"copy", "link.txt", R"(C:\Korvo\got.txt)"}},
    {"a linked source on the machine",
     CopyOnMachine,
     {"copyl", R"(C:\Korvo\link.txt)", R"(C:\Korvo\got.txt)"}},
    {"a target in a linked folder",
     CopyFromPackage,
     {"copy", "new.txt", R"(C:\Korvo\out\secret.txt)"}},
    {"a new file in a linked folder",
     CopyFromPackageIfMissing,
     {"cc", "new.txt", R"(C:\Korvo\out\fresh.txt)"}},
    {"a deletion in a linked folder", DeleteFiles, {"del", R"(C:\Korvo\out\*.txt)"}},
    {"a rename into a linked folder",
     RenameCommand,
     {"ren", R"(C:\Korvo\target.txt)", R"(C:\Korvo\out\moved.txt)"}},
    {"a rename out of one",
     RenameCommand,
     {"ren", R"(C:\Korvo\out\secret.txt)", R"(C:\Korvo\got.txt)"}},
    {"a backup in a linked folder", BackUpFile, {"bkpf", R"(C:\Korvo\out\secret.txt)"}},
    {"a folder in a linked folder", MakeFolder, {"mkdr", R"(C:\Korvo\out\dir)"}},
    {"steps up to the host",
     CopyFromPackage,
     {"copy", R"(..\..\..\..\..\..\..\etc\passwd)", R"(C:\Korvo\got.txt)"}},
};

TEST(HostilePaths, NothingOutsideTheDrivesIsReadOrChanged) {
  for (const LinkCase& row : kLinkCases) {
    SCOPED_TRACE(row.what);
    LinkedRun given;
    const CommandRecord record = given.Call(row.handler, TokenList(row.tokens));
    EXPECT_NE(record.outcome, Outcome::Done);
    EXPECT_EQ(given.outside.Get("secret.txt"), "secret");
    EXPECT_THAT(std::vector<std::filesystem::path>(
                    std::filesystem::directory_iterator(given.outside.path()), {}),
                SizeIs(1));
    EXPECT_EQ(given.disk.Get("Korvo/got.txt"), "") << "nothing was read";
    EXPECT_EQ(given.disk.Get("Korvo/target.txt"), "old");
  }
}

TEST(HostilePaths, ALinkThatIsReplacedOrDeletedIsTheLinkAlone) {
  for (const bool deletes : {true, false}) {
    SCOPED_TRACE(deletes);
    LinkedRun given;
    if (deletes) {
      given.Call(DeleteFiles, {"del", R"(C:\Korvo\link.txt)"});
    } else {
      given.Call(CopyFromPackage, {"copy", "new.txt", R"(C:\Korvo\link.txt)"});
    }
    EXPECT_EQ(given.outside.Get("secret.txt"), "secret");
  }
}

struct NameCase {
  const char* what;
  std::string name;
  std::string on_disk;  ///< the name of the file afterwards; empty when the copy fails
};

TEST(HostilePaths, NamesThatNoFileCanHave) {
  const NameCase rows[] = {
      {"the console", "CON", ""},
      {"the printer with an extension", "LPT1.txt", ""},
      {"a stream of a file", "target.txt:stream", ""},
      {"a wildcard", "a*.txt", ""},
      {"a control", "a\x01.txt", ""},
      {"300 characters", std::string(300, 'x'), ""},
      {"a dot at the end does not count", "fresh.txt.", "fresh.txt"},
      {"a blank at the end does not count", "fresh.txt ", "fresh.txt"},
  };
  for (const NameCase& row : rows) {
    SCOPED_TRACE(row.what);
    PrefixRun given;
    given.Call(CopyFromPackage, {"copy", "new.txt", R"(C:\Korvo\)" + row.name});
    EXPECT_EQ(given.run.state.ErrorOccurred, row.on_disk.empty());
    EXPECT_THAT(given.window.boxes, SizeIs(row.on_disk.empty() ? 1 : 0));
    if (row.on_disk.empty()) {
      EXPECT_THAT(given.disk.NamesIn("Korvo"), ElementsAre("target.txt"));
    } else {
      EXPECT_THAT(given.disk.NamesIn("Korvo"), ElementsAre(row.on_disk, "target.txt"));
    }
    EXPECT_EQ(given.disk.Get("Korvo/target.txt"), "old");
  }
}

TEST(HostilePaths, ASourceAboveThePackageIsTakenWhileADriveCoversIt) {
  PrefixRun given;
  const CommandRecord record =
      given.Call(CopyFromPackage, {"copy", R"(..\Korvo\target.txt)", R"(C:\Korvo\copy.txt)"});
  EXPECT_EQ(record.outcome, Outcome::Warned);
  EXPECT_EQ(given.disk.Get("Korvo/copy.txt"), "old");
  PrefixRun strict({.strict = true});
  strict.Call(CopyFromPackage, {"copy", R"(..\Korvo\target.txt)", R"(C:\Korvo\copy.txt)"});
  EXPECT_TRUE(strict.run.Refused());
  EXPECT_THAT(strict.disk.NamesIn("Korvo"), ElementsAre("target.txt"));
}

}  // namespace
}  // namespace zent
