#include <gtest/gtest.h>

#include "platform/prefix/files/Drives.h"
#include "platform/prefix/files/TestMachine.h"

namespace zent {
namespace {

using testing::TempFolder;
using testing::TestMachine;

TEST(Drives, CIsDriveCWithoutAnEntry) {
  TestMachine machine;
  const Drives& drives = machine.OpenDrives();
  ASSERT_NE(drives.Root('C'), nullptr);
  EXPECT_EQ(drives.Root('C')->real_path, machine.path() / "drive_c");
  EXPECT_EQ(drives.Root('D'), nullptr);
  EXPECT_EQ(drives.Root('1'), nullptr);
}

TEST(Drives, EveryEntryIsADrive) {
  TestMachine machine;
  const TempFolder other;
  const auto devices = machine.path() / "dosdevices";
  std::filesystem::create_symlink("../drive_c", devices / "c:");
  std::filesystem::create_symlink(other.path(), devices / "E:");
  std::filesystem::create_symlink("/dev/null", devices / "e::");
  std::filesystem::create_symlink("/dev/null", devices / "com1");
  const Drives& drives = machine.OpenDrives();
  EXPECT_EQ(drives.Root('C')->real_path, machine.path() / "drive_c");
  ASSERT_NE(drives.Root('E'), nullptr);
  EXPECT_EQ(drives.Root('E')->real_path, other.path());
}

TEST(Drives, AMachineWithoutCIsAnError) {
  const TempFolder empty;
  EXPECT_EQ(Drives::Open(empty.path(), false).number(), kPathNotFound);
  EXPECT_EQ(Drives::Open(empty.path() / "missing", false).number(), kPathNotFound);
}

TEST(Drives, ToWindowsPathGivesTheNearestDrive) {
  TestMachine machine;
  machine.Put("Korvo/a.txt");
  std::filesystem::create_symlink("/", machine.path() / "dosdevices/z:");
  std::filesystem::create_symlink(machine.C("Korvo"), machine.path() / "link");
  const TempFolder other;
  const Drives& drives = machine.OpenDrives();

  EXPECT_EQ(drives.ToWindowsPath(machine.C("Korvo")), R"(C:\Korvo)");
  EXPECT_EQ(drives.ToWindowsPath(machine.C("Korvo/a.txt")), R"(C:\Korvo\a.txt)");
  EXPECT_EQ(drives.ToWindowsPath(machine.path() / "link"), R"(C:\Korvo)");
  EXPECT_EQ(drives.ToWindowsPath(machine.path() / "drive_c"), R"(C:\)");
  EXPECT_EQ(drives.ToWindowsPath("/"), R"(Z:\)");
  EXPECT_TRUE(drives.ToWindowsPath(other.path())->starts_with(R"(Z:\)"));
  EXPECT_EQ(drives.ToWindowsPath(machine.C("missing")), std::nullopt);
}

TEST(Drives, ToWindowsPathKnowsNoOtherFolder) {
  TestMachine machine;
  std::filesystem::create_directory(machine.path() / "drive_c2");
  const Drives& drives = machine.OpenDrives();
  EXPECT_EQ(drives.ToWindowsPath(machine.path()), std::nullopt);
  EXPECT_EQ(drives.ToWindowsPath(machine.path() / "drive_c2"), std::nullopt);
}

TEST(Drives, ANameThatNoWindowsPathHoldsIsNotCovered) {
  TestMachine machine;
  for (const char* name : {"a:b", "a\\b", "a?b", "dot.", "nul", "latin\xE4"}) {
    SCOPED_TRACE(name);
    machine.MakeFolder(name);
    machine.MakeFolder(std::string(name) + "/inner");
    const Drives& drives = machine.OpenDrives();
    EXPECT_EQ(drives.ToWindowsPath(machine.C(name)), std::nullopt);
    EXPECT_EQ(drives.ToWindowsPath(machine.C(name) / "inner"), std::nullopt);
  }
}

TEST(Drives, APackageGetsTheFirstFreeLetter) {
  TestMachine machine;
  const TempFolder package;
  package.Put("a.txt", "contents");
  // A drive that is not there, such as a disc that is not inserted, keeps its letter.
  std::filesystem::create_symlink("/nowhere", machine.path() / "dosdevices/d:");
  Drives& drives = machine.OpenDrives();

  EXPECT_EQ(drives.AddPackageFolder(package.path()).value_or(""), R"(E:\)");
  EXPECT_EQ(drives.AddPackageFolder(package.path()).value_or(""), R"(E:\)");  // covered now
  ASSERT_NE(drives.Root('E'), nullptr);
  EXPECT_EQ(drives.ToWindowsPath(package.path() / "a.txt"), R"(E:\a.txt)");

  PrefixFileSystem files(drives, R"(E:\)");
  EXPECT_EQ(ReadWholeFile(files, "A.TXT").value_or(""), "contents");
}

TEST(Drives, APackageThatADriveCoversStaysThere) {
  TestMachine machine;
  machine.MakeFolder("Packages/New one");
  Drives& drives = machine.OpenDrives();
  EXPECT_EQ(drives.AddPackageFolder(machine.C("Packages/New one")).value_or(""),
            R"(C:\Packages\New one)");
  EXPECT_EQ(drives.Root('D'), nullptr);
}

TEST(Drives, APackageFolderMustBeThere) {
  TestMachine machine;
  machine.Put("file");
  Drives& drives = machine.OpenDrives();
  EXPECT_EQ(drives.AddPackageFolder(machine.C("missing")).number(), kPathNotFound);
  EXPECT_EQ(drives.AddPackageFolder(machine.C("file")).number(), kPathNotFound);
}

TEST(Drives, WithoutAFreeLetterThereIsNoRoomForAPackage) {
  TestMachine machine;
  for (char letter = 'd'; letter <= 'z'; ++letter) {
    std::filesystem::create_symlink("/nowhere",
                                    machine.path() / "dosdevices" / (std::string{letter} + ":"));
  }
  const TempFolder package;
  EXPECT_EQ(machine.OpenDrives().AddPackageFolder(package.path()).number(), kDeviceUnavailable);
}

TEST(IsInside, ComparesWholeNames) {
  EXPECT_TRUE(IsInside("/a/b", "/a"));
  EXPECT_TRUE(IsInside("/a", "/a"));
  EXPECT_TRUE(IsInside("/a", "/"));
  EXPECT_FALSE(IsInside("/ab", "/a"));
  EXPECT_FALSE(IsInside("relative", "/"));
}

}  // namespace
}  // namespace zent
