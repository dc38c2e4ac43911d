#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>

#include "fileops/Backup.h"
#include "fileops/CopyCommands.h"
#include "fileops/DeleteAndRename.h"
#include "fileops/FileMachine.h"
#include "fileops/prefix/PrefixRun.h"
#include "support/posix/ChildProcess.h"

/// The file commands over real files.
namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::ErrorBox;
using ::testing::IsEmpty;
using testing::PrefixRun;

constexpr const char* kTarget = R"(C:\Korvo\target.txt)";

TEST(OnDisk, ACopyKeepsTheTimeAndTheAttributesOfItsSource) {
  PrefixRun given;
  const auto long_ago =
      std::filesystem::file_time_type::clock::now() - std::chrono::hours(24 * 365);
  std::filesystem::last_write_time(given.disk.C("Package/new.txt"), long_ago);
  given.MakeReadOnly(R"(C:\Package\new.txt)");
  given.Call(CopyFromPackage, {"copy", "new.txt", kTarget});
  EXPECT_EQ(given.disk.Get("Korvo/target.txt"), "new");
  EXPECT_EQ(std::filesystem::last_write_time(given.disk.C("Korvo/target.txt")), long_ago);
  EXPECT_EQ(given.files.Attributes(kTarget).value_or(0) & kAttributeReadOnly, kAttributeReadOnly);
}

TEST(OnDisk, ReadOnlyAndHiddenFilesAreCopiedOverByCopyAndCopyl) {
  for (const std::uint32_t attributes : {kAttributeReadOnly, kAttributeHidden}) {
    for (const auto& [handler, source] : {std::pair{&CopyFromPackage, "new.txt"},
                                          std::pair{&CopyOnMachine, R"(C:\Package\new.txt)"}}) {
      PrefixRun given;
      ASSERT_TRUE(given.files.SetAttributes(kTarget, attributes).ok());
      given.Call(handler, {"", source, kTarget});
      EXPECT_EQ(given.disk.Get("Korvo/target.txt"), "new");
      EXPECT_THAT(given.window.boxes, IsEmpty());
    }
  }
}

TEST(OnDisk, AFolderWhereAFileIsExpectedStays) {
  PrefixRun given;
  given.disk.Put("Korvo/dir/a.txt", "inside");
  given.Call(CopyFromPackage, {"copy", "new.txt", R"(C:\Korvo\dir)"});
  given.Call(DeleteFiles, {"del", R"(C:\Korvo\dir)"});
  EXPECT_THAT(given.window.boxes, ElementsAre(ErrorBox("Error Copying new.txt", kPathFileAccess)));
  EXPECT_EQ(given.disk.Get("Korvo/dir/a.txt"), "inside");
}

TEST(OnDisk, DeletesReadOnlyFiles) {
  PrefixRun given;
  given.MakeReadOnly(kTarget);
  EXPECT_EQ(given.Call(DeleteFiles, {"del", kTarget}).outcome, Outcome::Done);
  EXPECT_THAT(given.disk.NamesIn("Korvo"), IsEmpty());
}

TEST(OnDisk, AWildcardDeletesTenThousandFilesAndNothingElse) {
  PrefixRun given;
  for (int i = 0; i < 10'000; ++i) given.disk.Put("Korvo/" + std::to_string(i) + ".tmp", "x");
  given.disk.Put("Korvo/keep.tmpx", "x");
  given.disk.MakeFolder("Korvo/folder.tmp");
  EXPECT_EQ(given.Call(DeleteFiles, {"del", R"($(apppath)\*.tmp)"}).outcome, Outcome::Done);
  EXPECT_THAT(given.disk.NamesIn("Korvo"), ElementsAre("folder.tmp", "keep.tmpx", "target.txt"));
}

TEST(OnDisk, RenamesInAnyCaseAndOnlyOntoAFreeName) {
  PrefixRun given;
  given.disk.Put("Korvo/Other.txt", "other");
  given.MakeReadOnly(R"(C:\Korvo\Other.txt)");
  given.Call(RenameCommand, {"ren", R"(c:\KORVO\Target.TXT)", R"(c:\korvo\OTHER.TXT)"});
  EXPECT_THAT(given.window.boxes,
              ElementsAre(ErrorBox(R"(Error Renaming c:\KORVO\Target.TXT)", kFileAlreadyExists)));
  EXPECT_EQ(given.disk.Get("Korvo/Other.txt"), "other");
  given.Call(RenameCommand, {"ren", R"(c:\KORVO\Target.TXT)", R"(c:\korvo\Fresh.txt)"});
  EXPECT_THAT(given.disk.NamesIn("Korvo"), ElementsAre("Fresh.txt", "Other.txt"));
}

TEST(OnDisk, BacksUpBesideTheFile) {
  PrefixRun given;
  given.disk.Put("Korvo/target 2006-05-04 03-02-01.txt", "first backup");
  given.Call(BackUpFile, {"bkpf", kTarget});
  EXPECT_EQ(given.disk.Get("Korvo/target 2006-05-04 03-02-01.txt"), "first backup");
  EXPECT_EQ(given.disk.Get("Korvo/target 2006-05-04 03-02-02.txt"), "old");
}

TEST(OnDisk, MakesFolders) {
  PrefixRun given;
  EXPECT_EQ(given.Call(MakeFolder, {"mkdr", R"($(apppath)\Bin\)"}).outcome, Outcome::Done);
  EXPECT_EQ(given.Call(MakeFolder, {"mkdr", R"($(apppath)\BIN)"}).outcome, Outcome::Skipped);
  EXPECT_EQ(given.Call(MakeFolder, {"mkdr", R"($(apppath)\target.txt)"}).outcome, Outcome::Failed);
  EXPECT_THAT(given.disk.NamesIn("Korvo"), ElementsAre("Bin", "target.txt"));
}

TEST(OnDisk, AFullDiskLeavesTheOldFileAndNoSibling) {
  PrefixRun given;
  given.disk.Put("Package/big.txt", std::string(2'000'000, 'n'));
  const std::string box = testing::RunInChild([&] {
    const struct rlimit limit = {.rlim_cur = 1'000'000, .rlim_max = 1'000'000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);
    given.Call(CopyFromPackage, {"copy", "big.txt", kTarget});
    return given.window.boxes.empty() ? std::string() : given.window.boxes[0];
  });
  EXPECT_EQ(box, ErrorBox("Error Copying big.txt", kDiskFull));
  EXPECT_EQ(given.disk.Get("Korvo/target.txt"), "old");
  EXPECT_THAT(given.disk.NamesIn("Korvo"), ElementsAre("target.txt"));
}

TEST(OnDisk, AUserWithoutRightsIsToldAndChangesNothing) {
  PrefixRun given;
  using std::filesystem::perms;
  std::filesystem::permissions(given.disk.path(), perms::all);
  std::filesystem::permissions(given.disk.C("Korvo"),
                               perms::owner_all | perms::others_read | perms::others_exec);
  const std::string box = testing::RunAsOrdinaryUser([&] {
    given.Call(CopyFromPackage, {"copy", "new.txt", kTarget});
    return given.window.boxes.empty() ? std::string() : given.window.boxes[0];
  });
  EXPECT_EQ(box, ErrorBox("Error Copying new.txt", kPathFileAccess));
  EXPECT_EQ(given.disk.Get("Korvo/target.txt"), "old");
}

}  // namespace
}  // namespace zent
