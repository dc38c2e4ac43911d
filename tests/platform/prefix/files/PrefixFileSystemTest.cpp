#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <fstream>

#include "platform/prefix/files/PrefixFileSystem.h"
#include "platform/prefix/files/TestMachine.h"
#include "support/posix/ChildProcess.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::Found;
using testing::Hold;
using testing::HoldingProcess;
using testing::TempFolder;
using testing::TestMachine;

mode_t ModeOf(const std::filesystem::path& path) {
  struct stat info = {};
  EXPECT_EQ(::stat(path.c_str(), &info), 0) << path;
  return info.st_mode & 0777U;
}

std::string StoredAttribute(const std::filesystem::path& path) {
  std::string text(16, '\0');
  const ssize_t size = ::getxattr(path.c_str(), "user.DOSATTRIB", text.data(), text.size());
  return size < 0 ? "none" : text.substr(0, static_cast<std::size_t>(size));
}

TEST(PrefixFileSystem, ReadOnlyIsTheMissingWritePermission) {
  TestMachine machine;
  const auto file = machine.Put("a.txt");
  FileSystem& files = machine.Open();
  ::chmod(file.c_str(), 0444);
  EXPECT_EQ(files.Attributes(R"(C:\a.txt)").value_or(0), kAttributeArchive | kAttributeReadOnly);
  ::chmod(file.c_str(), 0464);
  EXPECT_EQ(files.Attributes(R"(C:\a.txt)").value_or(0), kAttributeArchive);
  EXPECT_TRUE(files.SetAttributes(R"(C:\a.txt)", kAttributeReadOnly).ok());
  EXPECT_EQ(ModeOf(file), 0444U);
  EXPECT_TRUE(files.SetAttributes(R"(C:\a.txt)", kAttributeNormal).ok());
  EXPECT_EQ(ModeOf(file), 0644U);
}

TEST(PrefixFileSystem, AReplacementKeepsThePermissionsOfTheOldFile) {
  TestMachine machine;
  const auto target = machine.Put("target.txt");
  ::chmod(target.c_str(), 0660);
  const auto source = machine.Put("source.txt");
  ::chmod(source.c_str(), 0444);
  EXPECT_TRUE(machine.Open().Replace(R"(C:\source.txt)", R"(C:\target.txt)").ok());
  EXPECT_EQ(ModeOf(target), 0660U);
  EXPECT_FALSE(std::filesystem::exists(source));
}

TEST(PrefixFileSystem, HiddenAndSystemAreAnExtendedAttribute) {
  TestMachine machine;
  const auto file = machine.Put("a.txt");
  FileSystem& files = machine.Open();
  EXPECT_TRUE(files.SetAttributes(R"(C:\a.txt)", kAttributeHidden | kAttributeReadOnly).ok());
  EXPECT_EQ(StoredAttribute(file), "0x2");
  EXPECT_TRUE(files.SetAttributes(R"(C:\a.txt)", kAttributeHidden | kAttributeSystem).ok());
  EXPECT_EQ(StoredAttribute(file), "0x6");
  EXPECT_TRUE(files.SetAttributes(R"(C:\a.txt)", kAttributeSystem).ok());
  EXPECT_EQ(StoredAttribute(file), "0x4");
  EXPECT_EQ(files.Attributes(R"(C:\a.txt)").value_or(0), kAttributeArchive | kAttributeSystem);
  EXPECT_TRUE(files.SetAttributes(R"(C:\a.txt)", kAttributeArchive).ok());
  EXPECT_EQ(StoredAttribute(file), "none");
}

TEST(PrefixFileSystem, ForeignBitsOfTheExtendedAttributeDoNotCount) {
  TestMachine machine;
  const auto file = machine.Put("a.txt");
  for (const char* text : {"0x20", "", "0x", "hidden", "0xffffffffffff"}) {
    SCOPED_TRACE(text);
    ::setxattr(file.c_str(), "user.DOSATTRIB", text, std::string_view(text).size(), 0);
    EXPECT_EQ(machine.Open().Attributes(R"(C:\a.txt)").value_or(0), kAttributeArchive);
  }
}

TEST(PrefixFileSystem, ALeadingDotHidesNothing) {
  TestMachine machine;
  machine.Put(".hidden");
  EXPECT_EQ(machine.Open().Attributes(R"(C:\.hidden)").value_or(0), kAttributeArchive);
}

TEST(PrefixFileSystem, AFolderCanBeHiddenButStaysWritable) {
  TestMachine machine;
  machine.MakeFolder("dir");
  FileSystem& files = machine.Open();
  EXPECT_TRUE(files.SetAttributes(R"(C:\dir)", kAttributeHidden | kAttributeReadOnly).ok());
  EXPECT_EQ(files.Attributes(R"(C:\dir)").value_or(0), kAttributeFolder | kAttributeHidden);
  ::chmod(machine.C("dir").c_str(), 0555);
  EXPECT_EQ(files.Attributes(R"(C:\dir)").value_or(0),
            kAttributeFolder | kAttributeHidden | kAttributeReadOnly);
  EXPECT_TRUE(files.SetAttributes(R"(C:\dir)", kAttributeNormal).ok());
  EXPECT_EQ(files.Attributes(R"(C:\dir)").value_or(0), kAttributeFolder);
}

TEST(PrefixFileSystem, TheRootHasAttributesOfItsOwn) {
  TestMachine machine;
  FileSystem& files = machine.Open();
  EXPECT_EQ(files.Attributes(R"(C:\)").value_or(0), kAttributeFolder);
  EXPECT_EQ(files.Delete(R"(C:\)").number(), kPathFileAccess);
  EXPECT_EQ(files.Move(R"(C:\)", R"(C:\x)").number(), kPathFileAccess);
  EXPECT_EQ(files.Write(R"(C:\)", "").number(), kPathFileAccess);
}

TEST(PrefixFileSystem, PipesAreNeverOpened) {
  TestMachine machine;
  machine.Put("a.txt", "a");
  ::mkfifo(machine.C("pipe").c_str(), 0666);
  FileSystem& files = machine.Open();
  EXPECT_EQ(files.OpenForReading(R"(C:\pipe)").number(), kPathFileAccess);
  EXPECT_EQ(files.Attributes(R"(C:\pipe)").number(), kPathFileAccess);
  EXPECT_EQ(files.Write(R"(C:\pipe)", "x").number(), kPathFileAccess);
  EXPECT_EQ(files.Copy(R"(C:\pipe)", R"(C:\b)").number(), kPathFileAccess);
  EXPECT_EQ(files.Copy(R"(C:\a.txt)", R"(C:\pipe)").number(), kPathFileAccess);
  EXPECT_EQ(files.Delete(R"(C:\pipe)").number(), kPathFileAccess);
  EXPECT_EQ(files.Move(R"(C:\pipe)", R"(C:\b)").number(), kPathFileAccess);
  EXPECT_EQ(files.CreateFolder(R"(C:\pipe)").number(), kPathFileAccess);
  EXPECT_THAT(Found(files, R"(C:\*)"), ElementsAre("a.txt"));
  EXPECT_THAT(Found(files, R"(C:\pipe)"), ElementsAre());
}

TEST(PrefixFileSystem, DevicesNeverReachTheDisk) {
  TestMachine machine;
  machine.Put("a.txt", "a");
  FileSystem& files = machine.Open();
  for (const char* path : {R"(C:\NUL)", "con", R"(C:\com1.txt)", R"(C:\lpt1\)"}) {
    SCOPED_TRACE(path);
    EXPECT_EQ(files.Write(path, "x").number(), kBadFileName);
    EXPECT_EQ(files.Copy(R"(C:\a.txt)", path).number(), kBadFileName);
    EXPECT_EQ(files.Move(R"(C:\a.txt)", path).number(), kBadFileName);
    EXPECT_EQ(files.CreateFolder(path).number(), kBadFileName);
  }
  EXPECT_THAT(machine.NamesIn(""), ElementsAre("a.txt"));
}

TEST(PrefixFileSystem, WhatNoPathCanNameIsNotListed) {
  TestMachine machine;
  for (const char* name : {"a.txt", "..\\..\\b.txt", "co:lon", "trail.", "blank ", "quest?ion",
                           "nul", "latin\xE4", "new\nline"}) {
    machine.Put(name);
  }
  EXPECT_THAT(Found(machine.Open(), R"(C:\*)"), ElementsAre("a.txt"));
}

TEST(PrefixFileSystem, ListsSizesAndAttributes) {
  TestMachine machine;
  machine.Put("b.txt", "12345");
  machine.MakeFolder("A");
  const std::vector<FileEntry> found = machine.Open().Find(R"(C:\*)").value();
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].name, "A");
  EXPECT_EQ(found[0].size, 0U);
  EXPECT_EQ(found[0].attributes, kAttributeFolder);
  EXPECT_EQ(found[1].name, "b.txt");
  EXPECT_EQ(found[1].size, 5U);
}

TEST(PrefixFileSystem, APlainNameIsFoundAsSpelledOnDisk) {
  TestMachine machine;
  machine.Put("Korvo.EXE", "12");
  const std::vector<FileEntry> found = machine.Open().Find(R"(C:\KORVO.exe)").value();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].name, "Korvo.EXE");
  EXPECT_EQ(found[0].size, 2U);
}

TEST(PrefixFileSystem, ACopyKeepsTimeAndPermissionsOfTheTarget) {
  TestMachine machine;
  const auto source = machine.Put("s.txt", "source");
  const auto target = machine.Put("T.txt", "target");
  ::chmod(source.c_str(), 0755);
  ::chmod(target.c_str(), 0660);
  const std::array<struct timespec, 2> times = {timespec{1000, 0}, timespec{1'000'000, 500}};
  ::utimensat(AT_FDCWD, source.c_str(), times.data(), 0);

  EXPECT_TRUE(machine.Open().Copy(R"(C:\s.txt)", R"(C:\t.TXT)").ok());

  EXPECT_THAT(machine.NamesIn(""), ElementsAre("T.txt", "s.txt"));
  EXPECT_EQ(machine.Get("T.txt"), "source");
  EXPECT_EQ(ModeOf(target), 0770U);  // what may run still may
  struct stat info = {};
  ::stat(target.c_str(), &info);
  EXPECT_EQ(info.st_mtim.tv_sec, 1'000'000);
  EXPECT_EQ(info.st_mtim.tv_nsec, 500);
}

TEST(PrefixFileSystem, AHardLinkIsTheSameFile) {
  TestMachine machine;
  machine.Put("a.txt", "a");
  std::filesystem::create_hard_link(machine.C("a.txt"), machine.C("b.txt"));
  EXPECT_EQ(machine.Open().Copy(R"(C:\a.txt)", R"(C:\b.txt)").number(), kPermissionDenied);
  EXPECT_EQ(machine.Get("a.txt"), "a");
}

TEST(PrefixFileSystem, ACopyOverAHardLinkLeavesTheOtherName) {
  TestMachine machine;
  machine.Put("a.txt", "a");
  std::filesystem::create_hard_link(machine.C("a.txt"), machine.C("b.txt"));
  machine.Put("new.txt", "new");
  EXPECT_TRUE(machine.Open().Copy(R"(C:\new.txt)", R"(C:\b.txt)").ok());
  EXPECT_EQ(machine.Get("a.txt"), "a");
  EXPECT_EQ(machine.Get("b.txt"), "new");
}

TEST(PrefixFileSystem, EmptyAndLargeFilesAreCopiedWhole) {
  TestMachine machine;
  machine.Put("empty", "");
  std::string large;
  for (int i = 0; large.size() < 3'500'000; ++i) large += std::to_string(i);
  machine.Put("large", large);
  FileSystem& files = machine.Open();
  EXPECT_TRUE(files.Copy(R"(C:\empty)", R"(C:\empty2)").ok());
  EXPECT_TRUE(files.Copy(R"(C:\large)", R"(C:\large2)").ok());
  EXPECT_EQ(machine.Get("empty2"), "");
  EXPECT_TRUE(machine.Get("large2") == large);
}

TEST(PrefixFileSystem, AFileFromAnotherFileSystemIsCopied) {
  TestMachine machine;
  std::filesystem::create_symlink("/proc/self", machine.path() / "dosdevices/p:");
  EXPECT_TRUE(machine.Open().Copy(R"(P:\comm)", R"(C:\comm.txt)").ok());
  EXPECT_FALSE(machine.Get("comm.txt").empty());  // a file whose size is said to be 0
}

TEST(PrefixFileSystem, FilesMoveToAnotherDriveAndFoldersDoNot) {
  TestMachine machine;
  const TempFolder other;
  std::filesystem::create_symlink(other.path(), machine.path() / "dosdevices/e:");
  machine.Put("a.txt", "a");
  machine.Put("dir/b.txt", "b");
  FileSystem& files = machine.Open();

  EXPECT_TRUE(files.SetAttributes(R"(C:\a.txt)", kAttributeReadOnly).ok());
  EXPECT_TRUE(files.Move(R"(C:\a.txt)", R"(E:\A2.txt)").ok());
  EXPECT_EQ(files.Move(R"(C:\dir)", R"(E:\dir)").number(), kCannotRenameAcrossDrives);
  EXPECT_EQ(files.Move(R"(C:\dir\b.txt)", R"(E:\a2.TXT)").number(), kFileAlreadyExists);

  EXPECT_EQ(other.Get("A2.txt"), "a");
  EXPECT_EQ(files.Attributes(R"(E:\a2.txt)").value_or(0), kAttributeArchive | kAttributeReadOnly);
  EXPECT_THAT(machine.NamesIn(""), ElementsAre("dir"));
}

TEST(PrefixFileSystem, ARenameThatChangesOnlyTheCaseChangesTheSpelling) {
  TestMachine machine;
  machine.Put("korvo.txt", "a");
  machine.MakeFolder("dir");
  FileSystem& files = machine.Open();
  EXPECT_TRUE(files.Move(R"(C:\KORVO.txt)", R"(C:\Korvo.TXT)").ok());
  EXPECT_TRUE(files.Move(R"(C:\dir)", R"(C:\Dir\)").ok());
  EXPECT_THAT(machine.NamesIn(""), ElementsAre("Dir", "Korvo.TXT"));
}

TEST(PrefixFileSystem, TwoSpellingsAreNotRenamedOntoEachOther) {
  TestMachine machine;
  machine.Put("abc.txt", "small");
  machine.Put("ABC.txt", "big");
  EXPECT_EQ(machine.Open().Move(R"(C:\abc.txt)", R"(C:\ABC.txt)").number(), kFileAlreadyExists);
  EXPECT_EQ(machine.Get("ABC.txt"), "big");
}

TEST(PrefixFileSystem, ALoadedFileMayBeRenamedButNotReplaced) {
  TestMachine machine;
  machine.Put("new.dll", "new");
  const auto file = machine.Put("addin.dll", "old");
  const HoldingProcess loader(file, Hold::Mapped);
  FileSystem& files = machine.Open();
  EXPECT_EQ(files.Copy(R"(C:\new.dll)", R"(C:\addin.dll)").number(), kPermissionDenied);
  EXPECT_EQ(files.Delete(R"(C:\addin.dll)").number(), kPermissionDenied);
  EXPECT_EQ(files.Write(R"(C:\addin.dll)", "x").number(), kPermissionDenied);
  EXPECT_TRUE(files.Move(R"(C:\addin.dll)", R"(C:\addin old.dll)").ok());
  EXPECT_TRUE(files.Copy(R"(C:\new.dll)", R"(C:\addin.dll)").ok());
  EXPECT_EQ(machine.Get("addin old.dll"), "old");
}

TEST(PrefixFileSystem, AFileInUseDoesNotMoveToAnotherDrive) {
  for (const Hold hold : {Hold::Mapped, Hold::Reading}) {
    TestMachine machine;
    const TempFolder other;
    std::filesystem::create_symlink(other.path(), machine.path() / "dosdevices/e:");
    const HoldingProcess holder(machine.Put("addin.dll", "old"), hold);
    EXPECT_EQ(machine.Open().Move(R"(C:\addin.dll)", R"(E:\addin.dll)").number(),
              kPermissionDenied);
    EXPECT_EQ(machine.Get("addin.dll"), "old");
    EXPECT_TRUE(std::filesystem::is_empty(other.path()));
  }
}

TEST(PrefixFileSystem, NamesTooLongForTheDiskAreRefused) {
  TestMachine machine;
  std::string name;
  for (int i = 0; i < 200; ++i) name += "\xC3\xA4";  // 200 characters, 400 bytes
  EXPECT_EQ(machine.Open().Write("C:\\" + name, "x").number(), kPathFileAccess);
  EXPECT_EQ(machine.Open().CreateFolder("C:\\" + std::string(300, 'x')).number(), kPathFileAccess);
  EXPECT_TRUE(machine.NamesIn("").empty());
}

TEST(PrefixFileSystem, HostPathGivesWhereAFileLies) {
  TestMachine machine;
  const auto file = machine.Put("Korvo/Korvo.exe");
  machine.Link("link.exe", "Korvo/Korvo.exe");
  PrefixFileSystem& files = machine.Open();
  EXPECT_EQ(files.HostPath(R"(c:\korvo\KORVO.EXE)").value_or(""), file);
  EXPECT_EQ(files.HostPath(R"(C:\link.exe)").value_or(""), file);
  EXPECT_EQ(files.HostPath(R"(C:\missing)").number(), kFileNotFound);
  EXPECT_EQ(files.HostTarget(R"(c:\korvo\KORVO.EXE)").value_or(""), file);
  EXPECT_EQ(files.HostTarget(R"(c:\korvo\New.txt)").value_or(""), file.parent_path() / "New.txt");
  EXPECT_EQ(files.HostTarget(R"(C:\link.exe)").value_or(""), machine.C("link.exe"));
  EXPECT_EQ(files.HostTarget(R"(C:\missing\New.txt)").number(), kPathNotFound);
}

TEST(PrefixFileSystem, TenThousandFilesInAFolderAreFoundAndDeleted) {
  TestMachine machine;
  machine.MakeFolder("many");
  constexpr int kFiles = 10'000;
  for (int i = 0; i < kFiles; ++i) {
    std::ofstream(machine.C("many/file" + std::to_string(i) + ".tmp"));
  }
  FileSystem& files = machine.Open();

  const std::vector<std::string> found = Found(files, R"(C:\many\*.tmp)");
  EXPECT_EQ(found.size(), static_cast<std::size_t>(kFiles));
  int deleted = 0;
  for (const std::string& name : found) {
    if (files.Find("C:\\many\\" + name).ok() && files.Delete("C:\\many\\" + name).ok()) ++deleted;
  }

  EXPECT_EQ(deleted, kFiles);
  EXPECT_TRUE(machine.NamesIn("many").empty());
}

}  // namespace
}  // namespace zent
