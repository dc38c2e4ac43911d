#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "fileops/CopyCommands.h"
#include "fileops/DeleteAndRename.h"
#include "fileops/FileMachine.h"
#include "fileops/VersionedCopy.h"
#include "fileops/prefix/PrefixRun.h"
#include "support/posix/ChildProcess.h"

/// Commands that meet a file which another process really holds.
namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using testing::ErrorBox;
using testing::Hold;
using testing::HoldingProcess;
using ::testing::IsEmpty;
using testing::Library;
using testing::PrefixRun;
using ::testing::StartsWith;

constexpr const char* kTarget = R"(C:\Korvo\target.txt)";

TEST(FilesInUse, ACopyAsksAndGoesOnWhenTheOtherProgramEnds) {
  for (const auto& [handler, source] : {std::pair{&CopyFromPackage, "new.txt"},
                                        std::pair{&CopyOnMachine, R"(C:\Package\new.txt)"}}) {
    SCOPED_TRACE(source);
    PrefixRun given;
    auto reader = std::make_unique<HoldingProcess>(given.disk.C("Korvo/target.txt"), Hold::Reading);
    ASSERT_TRUE(reader->ok());
    given.window.answers = {Answer::Retry};
    given.window.on_ask = [&] {
      EXPECT_EQ(given.disk.Get("Korvo/target.txt"), "old");
      reader.reset();
    };
    const CommandRecord record = given.Call(handler, {"", source, kTarget});
    EXPECT_THAT(given.window.boxes,
                ElementsAre(ErrorBox(std::string("Error Copying ") + source, kPermissionDenied)));
    EXPECT_EQ(given.disk.Get("Korvo/target.txt"), "new");
    EXPECT_EQ(record.outcome, Outcome::Done);
    EXPECT_THAT(given.disk.NamesIn("Korvo"), ElementsAre("target.txt"));
  }
}

TEST(FilesInUse, ACancelledCopyLeavesTheOldFile) {
  PrefixRun given;
  const HoldingProcess writer(given.disk.C("Korvo/target.txt"), Hold::Writing);
  given.Call(CopyFromPackage, {"copy", "new.txt", kTarget});
  EXPECT_EQ(given.disk.Get("Korvo/target.txt"), "old");
  EXPECT_THAT(given.disk.NamesIn("Korvo"), ElementsAre("target.txt"));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

TEST(FilesInUse, ADeletionKeepsSilentAndIsRecorded) {
  PrefixRun given;
  const HoldingProcess reader(given.disk.C("Korvo/target.txt"), Hold::Reading);
  const CommandRecord record = given.Call(DeleteFiles, {"del", kTarget});
  EXPECT_EQ(given.disk.Get("Korvo/target.txt"), "old");
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_FALSE(given.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_THAT(record.reason, EndsWith("Permission denied (70)"));
}

TEST(FilesInUse, ARenameIsReported) {
  PrefixRun given;
  const HoldingProcess reader(given.disk.C("Korvo/target.txt"), Hold::Reading);
  given.Call(RenameCommand, {"ren", kTarget, R"(C:\Korvo\other.txt)"});
  EXPECT_THAT(given.window.boxes,
              ElementsAre(ErrorBox("Error Renaming " + std::string(kTarget), kPermissionDenied)));
  EXPECT_THAT(given.disk.NamesIn("Korvo"), ElementsAre("target.txt"));
}

/// A newer library in the package than in the application's folder.
struct LibraryRun : PrefixRun {
  LibraryRun() {
    disk.Put("Package/addin.dll", Library("3.6.0", "new"));
    disk.Put("Korvo/addin.dll", Library("3.5.9", "old"));
  }
  CommandRecord CopyLibrary() {
    return Call(CopyByVersion, {"CopyRegIfNewerVersion", "addin.dll", R"($(apppath)\addin.dll)"});
  }
};

TEST(FilesInUse, ALoadedLibraryStaysUnderATimeStampedName) {
  LibraryRun given;
  const HoldingProcess loader(given.disk.C("Korvo/addin.dll"), Hold::Mapped);
  ASSERT_TRUE(loader.ok());
  given.CopyLibrary();
  EXPECT_THAT(given.disk.NamesIn("Korvo"),
              ElementsAre("addin 2006-05-04 03-02-01.dll", "addin.dll", "target.txt"));
  EXPECT_THAT(given.disk.Get("Korvo/addin.dll"), EndsWith("new"));
  EXPECT_THAT(given.disk.Get("Korvo/addin 2006-05-04 03-02-01.dll"), EndsWith("old"));
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_TRUE(given.run.state.RebootComputer);
}

TEST(FilesInUse, ALibraryThatCannotBeRenamedEitherStays) {
  LibraryRun given;
  const HoldingProcess reader(given.disk.C("Korvo/addin.dll"), Hold::Reading);
  given.CopyLibrary();
  EXPECT_THAT(given.disk.NamesIn("Korvo"), ElementsAre("addin.dll", "target.txt"));
  EXPECT_THAT(given.disk.Get("Korvo/addin.dll"), EndsWith("old"));
  EXPECT_THAT(given.window.boxes, ElementsAre(StartsWith("Error Renaming ")));
  EXPECT_FALSE(given.run.state.RebootComputer);
}

TEST(FilesInUse, AReadOnlyLibraryIsNotInUse) {
  LibraryRun given;
  given.MakeReadOnly(R"(C:\Korvo\addin.dll)");
  given.CopyLibrary();
  EXPECT_THAT(given.window.boxes,
              ElementsAre(ErrorBox("Error Copying addin.dll", kPathFileAccess)));
  EXPECT_THAT(given.disk.Get("Korvo/addin.dll"), EndsWith("old"));
  EXPECT_FALSE(given.run.state.RebootComputer);
}

}  // namespace
}  // namespace zent
