#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fileops/FileMachine.h"
#include "fileops/VersionedCopy.h"

namespace zent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using testing::ErrorBox;
using testing::FileMachine;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::Library;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* kIfNotSame = "CopyRegIfNotSameVersion";
constexpr const char* kIfNewer = "CopyRegIfNewerVersion";
constexpr const char* kInstalled = R"(C:\Korvo\addin.dll)";
constexpr const char* kSetAside = R"(C:\Korvo\addin 2006-05-04 03-02-01.dll)";
constexpr const char* kCopying = R"(Copying new.dll to C:\Korvo\addin.dll)";
constexpr const char* kRegistering = R"(Registering C:\Korvo\addin.dll)";
constexpr const char* kUnregistering = R"(Unregistering C:\Korvo\addin.dll)";
constexpr const char* kUnregistered = R"(C:\windows\regsvr32 /s /u "C:\Korvo\addin.dll" (RetVal=)";
constexpr const char* kSettingAside =
    R"(Renaming C:\Korvo\addin.dll to C:\Korvo\addin 2006-05-04 03-02-01.dll)";
constexpr const char* kGivingBack =
    R"(Renaming C:\Korvo\addin 2006-05-04 03-02-01.dll to C:\Korvo\addin.dll)";

/// A package with a component of one version over an installed one; "-" for no file, an empty text
/// for a file without a version.
struct VersionMachine : FileMachine {
  explicit VersionMachine(std::string_view offered, std::string_view installed) {
    Put(R"(D:\Package\new.dll)", offered, "new");
    Put(kInstalled, installed, "old");
    machine.files.PutFile(R"(C:\windows\system32\regsvr32.exe)", "MZ");
  }
  void Put(std::string_view path, std::string_view version, std::string_view contents) {
    if (version == "-") return;
    machine.files.PutFile(path,
                          version.empty() ? std::string(contents) : Library(version, contents));
  }
  CommandRecord Run(const char* keyword) {
    return Call(CopyByVersion, {keyword, "new.dll", R"($(apppath)\addin.dll)"});
  }
  std::string Contents(std::string_view path) const {
    return machine.files.Contents(path).value_or("-");
  }
};

struct VersionCase {
  const char* what;
  const char* offered;
  const char* installed;
  bool not_same;  ///< CopyRegIfNotSameVersion copies
  bool newer;     ///< CopyRegIfNewerVersion copies
};

constexpr VersionCase kVersionCases[] = {
    {"a newer version", "3.6.0", "3.5.9", true, true},
    {"an older version", "3.5.9", "3.6.0", true, false},
    {"the same version", "3.6.0", "3.6.0", false, false},
    {"the same number in other words", "3.06.0.1", "3.6.0.1", true, false},
    {"a newer fourth number", "3.6.0.2", "3.6.0.1", true, false},
    {"ten above nine", "3.10.0", "3.9.0", true, true},
    {"texts differ in case alone", "3.6.0a", "3.6.0A", true, false},
    {"the installed file is missing", "3.6.0", "-", true, true},
    {"the installed file has no version", "3.6.0", "", true, true},
    {"the package file has no version", "", "3.6.0", true, false},
    {"neither has a version", "", "", false, false},
    {"neither is there", "-", "-", false, false},
};

/// One row with one keyword.
void ExpectVersionedCopy(const VersionCase& row, const char* keyword, bool copies,
                         const std::string& reason) {
  SCOPED_TRACE(std::string(keyword) + ": " + row.what);
  VersionMachine given(row.offered, row.installed);
  const std::string before = given.Contents(kInstalled);
  const CommandRecord record = given.Run(keyword);

  const std::string shown = copies ? kCopying : "Not copying new.dll - " + reason;
  EXPECT_THAT(given.messages(), ElementsAre(shown, kRegistering));
  EXPECT_EQ(given.Contents(kInstalled), copies ? given.Contents(R"(D:\Package\new.dll)") : before);
  EXPECT_EQ(given.machine.processes.launches.size(), 1U) << "registered in either case";
  if (given.Contents(kInstalled) != "-") {
    EXPECT_EQ(record.outcome, copies ? Outcome::Done : Outcome::Skipped) << record.reason;
  }
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_FALSE(given.run.state.RebootComputer);
}

TEST(CopyByVersion, CopiesByTheVersionsAndAlwaysRegisters) {
  for (const VersionCase& row : kVersionCases) {
    ExpectVersionedCopy(row, kIfNotSame, row.not_same, "same version");
    ExpectVersionedCopy(row, kIfNewer, row.newer, "older version");
  }
}

TEST(CopyByVersion, TakesItsKeywordInAnyCase) {
  VersionMachine given("3.6.0", "3.6.0");
  given.Run(" COPYREGIFNEWERVERSION ");
  EXPECT_THAT(given.messages(), Contains("Not copying new.dll - older version"));
}

TEST(CopyByVersion, AnotherKeywordDoesNothing) {
  VersionMachine given("3.6.0", "3.5.9");
  given.Run("CopyRegSomehow");
  EXPECT_THAT(given.messages(), IsEmpty());
  EXPECT_THAT(given.machine.files.log().changes(), IsEmpty());
}

TEST(CopyByVersion, AMissingTokenIsReported) {
  for (const char* keyword : {kIfNotSame, kIfNewer}) {
    FileMachine given;
    given.Call(CopyByVersion, {keyword, "new.dll"});
    EXPECT_THAT(given.window.boxes,
                ElementsAre(ErrorBox("Error Copying new.dll", kSubscriptOutOfRange)));
  }
}

TEST(CopyByVersion, AReadOnlyTargetIsAnErrorNotAFileInUse) {
  VersionMachine given("3.6.0", "3.5.9");
  given.machine.files.PutFile(kInstalled, Library("3.5.9", "old"), kAttributeReadOnly);
  given.Run(kIfNewer);
  EXPECT_THAT(given.messages(), ElementsAre(kCopying)) << "attributes stay, nothing is registered";
  EXPECT_THAT(given.window.boxes, ElementsAre(ErrorBox("Error Copying new.dll", kPathFileAccess)));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_FALSE(given.run.state.RebootComputer);
  EXPECT_THAT(given.machine.processes.launches, IsEmpty());
}

TEST(CopyByVersion, AStrictRunRefusesASourceOutsideThePackage) {
  FileMachine given({.strict = true});
  given.Call(CopyByVersion, {kIfNotSame, R"(..\Outside.txt)", kInstalled});
  EXPECT_TRUE(given.run.Refused());
  EXPECT_THAT(given.machine.files.log().changes(), IsEmpty());
  EXPECT_THAT(given.machine.processes.launches, IsEmpty());
}

// --- A target in use ---

/// The installed file is loaded by another program.
struct LoadedMachine : VersionMachine {
  LoadedMachine() : VersionMachine("3.6.0", "3.5.9") { machine.files.HoldLoaded(kInstalled); }
};

TEST(CopyByVersion, ALockedLibraryStaysUnderATimeStampedNameBesideTheNewCopy) {
  for (const char* keyword : {kIfNotSame, kIfNewer}) {
    SCOPED_TRACE(keyword);
    LoadedMachine given;
    const CommandRecord record = given.Run(keyword);
    EXPECT_THAT(given.messages(), ElementsAre(kCopying, kUnregistering, StartsWith(kUnregistered),
                                              kSettingAside, kCopying, kRegistering));
    EXPECT_THAT(given.Contents(kInstalled), EndsWith("new"));
    EXPECT_THAT(given.Contents(kSetAside), EndsWith("old"));
    EXPECT_THAT(given.window.boxes, IsEmpty()) << "nobody is asked";
    EXPECT_TRUE(given.run.state.RebootComputer);
    EXPECT_FALSE(given.run.state.CopyExeFailed);
    EXPECT_FALSE(given.run.state.ErrorOccurred);
    EXPECT_EQ(record.outcome, Outcome::Done) << record.reason;
  }
}

TEST(CopyByVersion, ALockedProgramIsRememberedAsOne) {
  for (const char* source : {"new.exe", "New.EXE"}) {
    VersionMachine given("3.6.0", "-");
    given.Put(std::string(R"(D:\Package\)") + source, "3.6.0", "new");
    given.machine.files.HoldLoaded(R"(C:\Korvo\plain.txt)");
    given.Call(CopyByVersion, {kIfNotSame, source, R"(C:\Korvo\plain.txt)"});
    EXPECT_TRUE(given.run.state.RebootComputer);
    EXPECT_TRUE(given.run.state.CopyExeFailed) << "the extension of the source counts";
  }
}

TEST(CopyByVersion, WaitsForTheNextSecondRatherThanRenameOntoABackup) {
  LoadedMachine given;
  given.machine.files.PutFile(kSetAside, "first backup");
  given.Run(kIfNewer);
  EXPECT_EQ(given.Contents(kSetAside), "first backup");
  EXPECT_THAT(given.Contents(R"(C:\Korvo\addin 2006-05-04 03-02-02.dll)"), EndsWith("old"));
  EXPECT_TRUE(given.run.state.RebootComputer);
}

TEST(CopyByVersion, WhenTheRenameFailsTheStepEndsWithItsReport) {
  VersionMachine given("3.6.0", "3.5.9");
  given.machine.files.HoldOpen(kInstalled);
  const CommandRecord record = given.Run(kIfNewer);
  EXPECT_THAT(given.messages(),
              ElementsAre(kCopying, kUnregistering, StartsWith(kUnregistered), kSettingAside));
  EXPECT_THAT(given.window.boxes,
              ElementsAre(ErrorBox(R"(Error Renaming C:\Korvo\addin.dll)", kPermissionDenied)));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_FALSE(given.run.state.RebootComputer);
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_THAT(given.Contents(kInstalled), EndsWith("old"));
}

TEST(CopyByVersion, WhenTheCopyAfterTheRenameFailsTheOldFileGetsItsNameBack) {
  LoadedMachine given;
  // Copy, SetAttributes, Move, Copy
  given.machine.files.log().FailChange(4, StandardError(kDiskFull));
  given.Run(kIfNewer);
  EXPECT_THAT(given.messages(), ElementsAre(kCopying, kUnregistering, StartsWith(kUnregistered),
                                            kSettingAside, kCopying, kGivingBack));
  EXPECT_THAT(given.window.boxes, ElementsAre(ErrorBox("Error Copying new.dll", kDiskFull)));
  EXPECT_THAT(given.Contents(kInstalled), EndsWith("old"));
  EXPECT_EQ(given.Contents(kSetAside), "-");
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_FALSE(given.run.state.RebootComputer);
}

TEST(CopyByVersion, AnOldFileThatCannotGetItsNameBackIsReportedToo) {
  LoadedMachine given;
  given.window.on_ask = [&] { given.machine.files.log().FailNothing(); };
  given.machine.files.log().FailWhere("Copy D:", StandardError(kPermissionDenied));
  given.machine.files.log().FailWhere("> " + std::string(kInstalled),
                                      StandardError(kPermissionDenied));
  given.Run(kIfNewer);
  EXPECT_THAT(given.window.boxes,
              ElementsAre(ErrorBox("Error Renaming " + std::string(kSetAside), kPermissionDenied),
                          ErrorBox("Error Copying new.dll", kPermissionDenied)));
  EXPECT_THAT(given.Contents(kSetAside), EndsWith("old")) << "the old file is whole";
  EXPECT_FALSE(given.run.state.RebootComputer);
}

TEST(CopyByVersion, ASourceInUseLeavesTheInstalledFileInPlace) {
  VersionMachine given("3.6.0", "3.5.9");
  given.machine.files.log().FailWhere("Copy D:", StandardError(kPermissionDenied));
  given.Run(kIfNewer);
  EXPECT_THAT(given.Contents(kInstalled), EndsWith("old"));
  EXPECT_THAT(given.window.boxes,
              ElementsAre(ErrorBox("Error Copying new.dll", kPermissionDenied)));
  EXPECT_FALSE(given.run.state.RebootComputer);
}

TEST(CopyByVersion, ASourceInUseAndNothingInstalledRenamesNothing) {
  VersionMachine given("3.6.0", "-");
  given.machine.files.log().FailWhere("Copy D:", StandardError(kPermissionDenied));
  given.Run(kIfNewer);
  EXPECT_THAT(given.messages(), Not(Contains(HasSubstr("Renaming"))));
  EXPECT_THAT(given.window.boxes,
              ElementsAre(ErrorBox("Error Copying new.dll", kPermissionDenied)));
  EXPECT_EQ(given.Contents(kInstalled), "-");
  EXPECT_FALSE(given.run.state.RebootComputer);
}

TEST(CopyByVersion, ARegistrationThatCannotStartStillNeedsTheRestart) {
  LoadedMachine given;
  given.machine.processes.Fail(R"(C:\windows\system32\regsvr32.exe)", StandardError(kFileNotFound));
  given.Run(kIfNewer);
  EXPECT_THAT(given.window.boxes,
              ElementsAre(StartsWith("Error Unregistering "), StartsWith("Error Registering ")));
  EXPECT_THAT(given.Contents(kInstalled), EndsWith("new"));
  EXPECT_TRUE(given.run.state.RebootComputer);
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

}  // namespace
}  // namespace zent
