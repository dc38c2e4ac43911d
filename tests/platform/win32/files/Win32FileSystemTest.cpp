#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>

#include "platform/win32/files/TestFolder.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::Found;
using testing::TestFolder;

constexpr char kGreek[] = "greek\xCE\xB1.txt";  // no letter of code page 1252

TEST(Win32FileSystem, TheCurrentFolderOfTheProcessIsNeitherUsedNorChanged) {
  TestFolder folder;
  folder.Put("a.txt", "a");
  char before[MAX_PATH] = {};
  GetCurrentDirectoryA(MAX_PATH, before);

  EXPECT_TRUE(folder.files().Copy("a.txt", "b.txt").ok());

  char after[MAX_PATH] = {};
  GetCurrentDirectoryA(MAX_PATH, after);
  EXPECT_STREQ(after, before);
  EXPECT_EQ(folder.Get("b.txt"), "a");
}

TEST(Win32FileSystem, NamesOfTheCodePageAreKept) {
  TestFolder folder;
  FileSystem& files = folder.files();
  for (const char* name : {"\xC3\xA4\xC3\x9F.txt", "\xE2\x82\xAC \xC5\xBE.txt"}) {
    SCOPED_TRACE(name);
    EXPECT_TRUE(files.Write(name, "text").ok());
    EXPECT_THAT(Found(files, "*"), ElementsAre(name));
    EXPECT_EQ(folder.Names(), std::vector<std::string>{name});
    EXPECT_EQ(ReadWholeFile(files, name).value_or(""), "text");
    EXPECT_TRUE(files.Delete(name).ok());
  }
  EXPECT_TRUE(files.Write("\xC3\x84.txt", "").ok());
  EXPECT_THAT(Found(files, "\xC3\xA4.TXT"), ElementsAre("\xC3\x84.txt"));  // in any case
}

TEST(Win32FileSystem, NamesOutsideTheCodePageAreRefused) {
  TestFolder folder;
  folder.Put("a.txt", "a");
  folder.Put(kGreek, "greek");
  FileSystem& files = folder.files();
  EXPECT_EQ(files.Attributes(kGreek).number(), kBadFileName);
  EXPECT_EQ(files.SetAttributes(kGreek, 0).number(), kBadFileName);
  EXPECT_EQ(files.Find(kGreek).number(), kBadFileName);
  EXPECT_EQ(files.OpenForReading(kGreek).number(), kBadFileName);
  EXPECT_EQ(files.Write(kGreek, "x").number(), kBadFileName);
  EXPECT_EQ(files.Copy("a.txt", kGreek).number(), kBadFileName);
  EXPECT_EQ(files.Move(kGreek, "b.txt").number(), kBadFileName);
  EXPECT_EQ(files.Delete(kGreek).number(), kBadFileName);
  EXPECT_EQ(files.CreateFolder(kGreek).number(), kBadFileName);
  EXPECT_EQ(folder.Get("a.txt"), "a");
}

TEST(Win32FileSystem, ANameOutsideTheCodePageIsNotListedAsASimilarOne) {
  TestFolder folder;
  folder.Put(kGreek, "greek");
  EXPECT_THAT(Found(folder.files(), "*"), ElementsAre());
  folder.Put("greeka.txt", "latin");
  EXPECT_THAT(Found(folder.files(), "*"), ElementsAre("greeka.txt"));
}

struct NoFileCase {
  const char* what;
  const char* path;
};

constexpr NoFileCase kNoFiles[] = {
    {"a device", "NUL"},
    {"a device with an extension", "con.txt"},
    {"a device in a folder", R"(C:\windows\com1)"},
    {"a stream of a file", "a.txt:x"},
    {"the contents of a file as a stream", "a.txt::$DATA"},
    {"a wildcard", "*.txt"},
    {"a literal path with a final dot", R"(\\?\C:\windows\a.)"},
};

TEST(Win32FileSystem, WhatIsNoFileIsNeverTouched) {
  TestFolder folder;
  folder.Put("a.txt", "a");
  FileSystem& files = folder.files();
  for (const NoFileCase& row : kNoFiles) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(files.OpenForReading(row.path).number(), kBadFileName);
    EXPECT_EQ(files.Write(row.path, "x").number(), kBadFileName);
    EXPECT_EQ(files.Copy("a.txt", row.path).number(), kBadFileName);
    EXPECT_EQ(files.Move("a.txt", row.path).number(), kBadFileName);
    EXPECT_EQ(files.Delete(row.path).number(), kBadFileName);
    EXPECT_EQ(files.CreateFolder(row.path).number(), kBadFileName);
  }
  EXPECT_THAT(folder.Names(), ElementsAre("a.txt"));
  EXPECT_EQ(folder.Get("a.txt"), "a");
}

TEST(Win32FileSystem, AShareThatIsNotThereIsAMissingPath) {
  TestFolder folder;
  folder.Put("a.txt", "a");
  FileSystem& files = folder.files();
  for (const char* path : {R"(\\nosuch\share\b.txt)", R"(\\nosuch\share\Data\b.txt)"}) {
    SCOPED_TRACE(path);
    EXPECT_EQ(files.Attributes(path).number(), kPathNotFound);
    EXPECT_EQ(files.Find(path).number(), kPathNotFound);
    EXPECT_EQ(files.OpenForReading(path).number(), kPathNotFound);
    EXPECT_EQ(files.Write(path, "x").number(), kPathNotFound);
    EXPECT_EQ(files.Copy("a.txt", path).number(), kPathNotFound);
    EXPECT_EQ(files.Move("a.txt", path).number(), kPathNotFound);
    EXPECT_EQ(files.CreateFolder(path).number(), kPathNotFound);
  }
}

TEST(Win32FileSystem, TheRootIsNoFile) {
  TestFolder folder;
  FileSystem& files = folder.files();
  EXPECT_EQ(files.Attributes(R"(C:\)").value_or(0) & kAttributeFolder, kAttributeFolder);
  EXPECT_EQ(files.Delete(R"(C:\)").number(), kPathFileAccess);
  EXPECT_EQ(files.Move(R"(C:\)", R"(C:\x)").number(), kPathFileAccess);
  EXPECT_EQ(files.Write(R"(C:\)", "").number(), kPathFileAccess);
  EXPECT_THAT(Found(files, R"(C:\)"), ElementsAre());
}

TEST(Win32FileSystem, AFolderCanBeHiddenButStaysWritable) {
  TestFolder folder;
  folder.Put("dir/a.txt");
  FileSystem& files = folder.files();
  EXPECT_TRUE(files.SetAttributes("dir", kAttributeHidden | kAttributeReadOnly).ok());
  EXPECT_EQ(files.Attributes("dir").value_or(0), kAttributeFolder | kAttributeHidden);
  EXPECT_TRUE(files.Write(R"(dir\b.txt)", "b").ok());
  EXPECT_TRUE(files.SetAttributes("dir", kAttributeNormal).ok());
  EXPECT_EQ(files.Attributes("dir").value_or(0), kAttributeFolder);
}

TEST(Win32FileSystem, AHiddenFileIsWrittenButNotCopiedOver) {
  TestFolder folder;
  folder.Put("a.txt", "a");
  folder.Put("hidden.txt", "old");
  FileSystem& files = folder.files();
  EXPECT_TRUE(files.SetAttributes("hidden.txt", kAttributeHidden).ok());
  EXPECT_EQ(files.Copy("a.txt", "hidden.txt").number(), kPathFileAccess);
  EXPECT_EQ(folder.Get("hidden.txt"), "old");
  EXPECT_TRUE(files.Write("hidden.txt", "new").ok());
  EXPECT_EQ(folder.Get("hidden.txt"), "new");
}

TEST(Win32FileSystem, ACopyTakesTheTimeAndKeepsTheSpelling) {
  TestFolder folder;
  const auto source = folder.Put("s.txt", "source");
  const auto old = std::filesystem::last_write_time(source) - std::chrono::hours(1000);
  std::filesystem::last_write_time(source, old);
  folder.Put("T.txt", "target");
  EXPECT_TRUE(folder.files().Copy("S.TXT", "t.TXT").ok());
  EXPECT_TRUE(folder.files().Write("s.TXT", "written").ok());
  EXPECT_THAT(folder.Names(), ElementsAre("T.txt", "s.txt"));
  EXPECT_EQ(folder.Get("T.txt"), "source");
  EXPECT_EQ(std::filesystem::last_write_time(folder.path() / "T.txt"), old);
}

TEST(Win32FileSystem, EmptyAndLargeFilesAreCopiedWhole) {
  TestFolder folder;
  std::string large;
  for (int i = 0; large.size() < 3'500'000; ++i) large += std::to_string(i);
  folder.Put("empty");
  folder.Put("large", large);
  EXPECT_TRUE(folder.files().Copy("empty", "empty2").ok());
  EXPECT_TRUE(folder.files().Copy("large", "large2").ok());
  EXPECT_EQ(folder.Get("empty2"), "");
  EXPECT_TRUE(folder.Get("large2") == large);
}

TEST(Win32FileSystem, AHardLinkIsTheSameFileUntilItIsReplaced) {
  TestFolder folder;
  folder.Put("a.txt", "a");
  folder.Put("new.txt", "new");
  ASSERT_TRUE(CreateHardLinkA(folder.Full("b.txt").c_str(), folder.Full("a.txt").c_str(), nullptr));
  EXPECT_EQ(folder.files().Copy("a.txt", "b.txt").number(), kPermissionDenied);
  EXPECT_TRUE(folder.files().Copy("new.txt", "b.txt").ok());
  EXPECT_EQ(folder.Get("a.txt"), "a");
  EXPECT_EQ(folder.Get("b.txt"), "new");
}

TEST(Win32FileSystem, AShortNameIsNotFoundByASearch) {
  TestFolder folder;
  folder.Put("a long name.html", "a");
  WIN32_FIND_DATAA data = {};
  FindClose(FindFirstFileA(folder.Full("a long name.html").c_str(), &data));
  const std::string short_name = data.cAlternateFileName;
  ASSERT_FALSE(short_name.empty());
  EXPECT_THAT(Found(folder.files(), short_name), ElementsAre());
  EXPECT_THAT(Found(folder.files(), "*.htm"), ElementsAre());
  // What is put in its place keeps the long one.
  EXPECT_TRUE(folder.files().Write(short_name, "new").ok());
  EXPECT_THAT(folder.Names(), ElementsAre("a long name.html"));
}

TEST(Win32FileSystem, ManyFilesOfAFolderAreFoundAndDeleted) {
  TestFolder folder;
  constexpr int kFiles = 2000;
  for (int i = 0; i < kFiles; ++i) folder.Put("many/file" + std::to_string(i) + ".tmp");
  const std::vector<std::string> found = Found(folder.files(), R"(many\*.tmp)");
  EXPECT_EQ(found.size(), static_cast<std::size_t>(kFiles));
  for (const std::string& name : found) {
    EXPECT_TRUE(folder.files().Delete("many\\" + name).ok());
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.path() / "many"));
}

/// A path of `length` characters in folders below `folder`, which are made; nothing of that name.
std::string PathOfLength(TestFolder& folder, std::size_t length) {
  std::string path = folder.text();
  while (length - path.size() > 100) {
    path += '\\' + std::string(50, 'd');
    EXPECT_TRUE(folder.files().CreateFolder(path).ok());
  }
  path += '\\';
  return path + std::string(length - path.size(), 'f');
}

TEST(Win32FileSystem, APathHas259CharactersAtMost) {
  TestFolder folder;
  FileSystem& files = folder.files();
  const std::string longest = PathOfLength(folder, 259);
  EXPECT_TRUE(files.Write(longest, "a").ok());
  EXPECT_EQ(ReadWholeFile(files, longest).value_or(""), "a");
  EXPECT_EQ(Found(files, longest).size(), 1U);
  EXPECT_TRUE(files.Move(longest, "short").ok());
  EXPECT_TRUE(files.Copy("short", longest).ok());
  EXPECT_TRUE(files.Delete(longest).ok());
  const std::string too_long = longest + 'f';
  EXPECT_EQ(files.Write(too_long, "a").number(), kPathFileAccess);
  EXPECT_EQ(files.Copy("short", too_long).number(), kPathFileAccess);
  EXPECT_EQ(files.CreateFolder(too_long).number(), kPathFileAccess);
}

TEST(Win32FileSystem, AFolderWithoutRoomForASiblingTakesNoFileAndLosesNone) {
  TestFolder folder;
  FileSystem& files = folder.files();
  const std::string deep = PathOfLength(folder, 245);
  ASSERT_TRUE(std::filesystem::create_directory(deep));
  const auto file = std::filesystem::path(deep) / "a";
  folder.Put(std::filesystem::relative(file, folder.path()).string(), "old");
  EXPECT_EQ(files.Write(deep + R"(\a)", "new").number(), kPathFileAccess);
  EXPECT_EQ(ReadWholeFile(files, deep + R"(\a)").value_or(""), "old");
  EXPECT_THAT(Found(files, deep + R"(\*)"), ElementsAre("a"));
}

TEST(Win32FileSystem, FilesMoveToAnotherVolumeAndFoldersDoNot) {
  TestFolder folder;
  folder.Put("a.txt", "a");
  folder.Put("b.txt", "b");
  folder.Put("dir/c.txt", "c");
  // The host's memory disk is another volume than its temporary folder.
  const std::string other = R"(Z:\dev\shm\zent-test-)" + std::to_string(GetCurrentProcessId());
  FileSystem& files = folder.files();
  ASSERT_TRUE(files.CreateFolder(other).ok());

  EXPECT_TRUE(files.SetAttributes("a.txt", kAttributeReadOnly).ok());
  EXPECT_TRUE(files.Move("a.txt", other + R"(\A2.txt)").ok());
  EXPECT_EQ(files.Move("dir", other + R"(\dir)").number(), kCannotRenameAcrossDrives);
  EXPECT_EQ(files.Move("b.txt", other + R"(\a2.TXT)").number(), kFileAlreadyExists);

  EXPECT_EQ(ReadWholeFile(files, other + R"(\A2.txt)").value_or(""), "a");
  EXPECT_EQ(files.Attributes(other + R"(\A2.txt)").value_or(0),
            kAttributeArchive | kAttributeReadOnly);
  EXPECT_THAT(folder.Names(), ElementsAre("b.txt", "dir"));
  EXPECT_THAT(Found(files, other + R"(\*)"), ElementsAre("A2.txt"));
  EXPECT_TRUE(files.SetAttributes(other + R"(\A2.txt)", kAttributeNormal).ok());
  EXPECT_TRUE(files.Delete(other + R"(\A2.txt)").ok());
  EXPECT_TRUE(RemoveDirectoryA(other.c_str()));
}

}  // namespace
}  // namespace zent
