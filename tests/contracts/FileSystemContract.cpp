#include "contracts/FileSystemContract.h"

#include <array>
#include <cstdint>
#include <ostream>

namespace zent::testing {

void PrintTo(const FileSystemMaker& maker, std::ostream* out) { *out << maker.name; }

void FileSystemContract::Put(const std::string& name, std::string_view contents,
                             std::uint32_t attributes) {
  EXPECT_TRUE(files().Write(Full(name), contents).ok()) << name;
  if (attributes != 0) {
    EXPECT_TRUE(files().SetAttributes(Full(name), attributes).ok()) << name;
  }
}

std::string FileSystemContract::Get(const std::string& name) {
  const Result<std::string> contents = ReadWholeFile(files(), Full(name));
  return contents.ok() ? contents.value() : "error " + std::to_string(contents.number());
}

std::string FileSystemContract::Found(const std::string& pattern) {
  const Result<std::vector<FileEntry>> found = files().Find(pattern);
  if (!found.ok()) return "error " + std::to_string(found.number());
  std::string names;
  for (const FileEntry& entry : found.value()) names += (names.empty() ? "" : " ") + entry.name;
  return names;
}

std::uint32_t FileSystemContract::Bits(const std::string& name) {
  constexpr std::uint32_t kNotAlike = kAttributeArchive | kAttributeNormal;
  return files().Attributes(Full(name)).value_or(~std::uint32_t{0}) & ~kNotAlike;
}

TEST_P(FileSystemContract, WhatIsWrittenIsRead) {
  Put("a.txt", "first");
  EXPECT_EQ(Get("a.txt"), "first");
  Put("A.TXT", std::string("sec\0nd\r\n", 8));
  EXPECT_EQ(Get("a.txt"), std::string("sec\0nd\r\n", 8));
  EXPECT_EQ(Found(Full("*")), "a.txt");
  Put("a.txt", "");
  EXPECT_EQ(Get("a.txt"), "");
}

TEST_P(FileSystemContract, AWriteKeepsHiddenAndSystem) {
  Put("a.txt", "old", kAttributeHidden | kAttributeSystem);
  Put("a.txt", "new");
  EXPECT_EQ(Get("a.txt"), "new");
  EXPECT_EQ(Bits("a.txt"), kAttributeHidden | kAttributeSystem);
}

TEST_P(FileSystemContract, AnOpenFileIsReadInParts) {
  Put("a.txt", "0123456789");
  const auto file = files().OpenForReading(Full("a.txt"));
  ASSERT_TRUE(file.ok());
  std::array<char, 4> buffer = {};
  EXPECT_EQ(file.value()->Size().value_or(0), 10U);
  EXPECT_EQ(file.value()->ReadAt(3, buffer).value_or(0), 4U);
  EXPECT_EQ(std::string(buffer.data(), 4), "3456");
  EXPECT_EQ(file.value()->ReadAt(8, buffer).value_or(0), 2U);
  EXPECT_EQ(file.value()->ReadAt(10, buffer).value_or(9), 0U);
  EXPECT_EQ(file.value()->ReadAt(~std::uint64_t{0}, buffer).value_or(9), 0U);
}

TEST_P(FileSystemContract, EveryCallTellsWhatIsMissing) {
  Put("a.txt", "a");
  const std::string missing = Full("missing.txt");
  const std::string nowhere = Full(R"(nope\x.txt)");
  for (const auto& [path, number] :
       {std::pair{missing, kFileNotFound}, std::pair{nowhere, kPathNotFound}}) {
    SCOPED_TRACE(path);
    EXPECT_EQ(files().Attributes(path).number(), number);
    EXPECT_EQ(files().SetAttributes(path, kAttributeNormal).number(), number);
    EXPECT_EQ(files().OpenForReading(path).number(), number);
    EXPECT_EQ(files().Copy(path, Full("b.txt")).number(), number);
    EXPECT_EQ(files().Move(path, Full("b.txt")).number(), number);
    EXPECT_EQ(files().Replace(path, Full("a.txt")).number(), number);
    EXPECT_EQ(files().Replace(Full("a.txt"), path).number(), number);
    EXPECT_EQ(files().Delete(path).number(), number);
  }
  EXPECT_EQ(Get("a.txt"), "a");
  EXPECT_EQ(files().Write(nowhere, "x").number(), kPathNotFound);
  EXPECT_EQ(files().Copy(Full("a.txt"), nowhere).number(), kPathNotFound);
  EXPECT_EQ(files().Move(Full("a.txt"), nowhere).number(), kPathNotFound);
  EXPECT_EQ(files().CreateFolder(nowhere).number(), kPathNotFound);
  EXPECT_EQ(files().Find(nowhere).number(), kPathNotFound);
  EXPECT_EQ(Found(missing), "");
}

TEST_P(FileSystemContract, NamesThatNoFileCanHaveAreRefused) {
  Put("a.txt", "a");
  for (const char* name : {"a|b", "a<b", "a>b", "a\"b", "a*b", "a?b", "a\tb"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(files().Attributes(Full(name)).number(), kBadFileName);
    EXPECT_EQ(files().Write(Full(name), "x").number(), kBadFileName);
    EXPECT_EQ(files().Copy(Full("a.txt"), Full(name)).number(), kBadFileName);
    EXPECT_EQ(files().Move(Full("a.txt"), Full(name)).number(), kBadFileName);
    EXPECT_EQ(files().Replace(Full("a.txt"), Full(name)).number(), kBadFileName);
    EXPECT_EQ(files().Delete(Full(name)).number(), kBadFileName);
    EXPECT_EQ(files().CreateFolder(Full(name)).number(), kBadFileName);
  }
  EXPECT_EQ(files().Attributes(Full(std::string(300, 'x'))).number(), kPathFileAccess);
  EXPECT_EQ(files().Attributes("").number(), kPathNotFound);
  EXPECT_EQ(files().Write("", "x").number(), kPathNotFound);
}

TEST_P(FileSystemContract, PathsTakeEveryForm) {
  EXPECT_TRUE(files().CreateFolder(Full("Dir")).ok());
  Put(R"(Dir\a.txt)", "a");
  for (const char* path :
       {R"(Dir\a.txt)", R"(dir\A.TXT)", "Dir/a.txt", R"(.\Dir\a.txt)", R"(Dir\..\Dir\a.txt)",
        R"(nope\..\Dir\a.txt)", R"(Dir\\a.txt)", "Dir\\a.txt. ", R"(Dir.\a.txt)"}) {
    SCOPED_TRACE(path);
    EXPECT_EQ(ReadWholeFile(files(), path).value_or("none"), "a");
    EXPECT_EQ(Get(path), "a");
  }
  EXPECT_EQ(files().FullPath("Dir/x/../a.txt ").value_or(""), Full(R"(Dir\a.txt)"));
  EXPECT_EQ(files().FullPath("Dir/").value_or(""), Full("Dir\\"));
  EXPECT_EQ(files().FullPath(R"(C:\..\..\a)").value_or(""), R"(C:\a)");
}

TEST_P(FileSystemContract, FoldersAreCreatedOneLevelAtATime) {
  EXPECT_TRUE(files().CreateFolder(Full("One")).ok());
  EXPECT_TRUE(files().CreateFolder(Full("One\\Two\\")).ok());
  EXPECT_EQ(files().Attributes(Full("one\\two")).value_or(0) & kAttributeFolder, kAttributeFolder);
  EXPECT_EQ(files().CreateFolder(Full("ONE")).number(), kPathFileAccess);
  Put("a.txt", "a");
  EXPECT_EQ(files().CreateFolder(Full("a.txt")).number(), kPathFileAccess);
  EXPECT_EQ(files().CreateFolder(Full("a.txt\\x")).number(), kPathNotFound);
}

TEST_P(FileSystemContract, AFolderIsNoFile) {
  Put("a.txt", "a");
  EXPECT_TRUE(files().CreateFolder(Full("Dir")).ok());
  EXPECT_EQ(files().OpenForReading(Full("Dir")).number(), kPathFileAccess);
  EXPECT_EQ(files().Write(Full("Dir"), "x").number(), kPathFileAccess);
  EXPECT_EQ(files().Delete(Full("Dir")).number(), kPathFileAccess);
  EXPECT_EQ(files().Copy(Full("Dir"), Full("b")).number(), kPathFileAccess);
  EXPECT_EQ(files().Copy(Full("a.txt"), Full("Dir")).number(), kPathFileAccess);
  EXPECT_EQ(files().Replace(Full("Dir"), Full("a.txt")).number(), kPathFileAccess);
  EXPECT_EQ(files().Replace(Full("a.txt"), Full("Dir")).number(), kPathFileAccess);
}

TEST_P(FileSystemContract, AttributesAreSetAndCleared) {
  Put("a.txt", "a");
  for (const std::uint32_t bits : {kAttributeReadOnly, kAttributeHidden, kAttributeSystem,
                                   kAttributeReadOnly | kAttributeHidden | kAttributeSystem}) {
    EXPECT_TRUE(files().SetAttributes(Full("a.txt"), bits | kAttributeArchive).ok());
    EXPECT_EQ(Bits("a.txt"), bits);
  }
  EXPECT_TRUE(files().SetAttributes(Full("a.txt"), kAttributeNormal).ok());
  EXPECT_EQ(Bits("a.txt"), 0U);
}

TEST_P(FileSystemContract, AReadOnlyFileIsProtected) {
  Put("a.txt", "a");
  Put("read.txt", "old", kAttributeReadOnly);
  EXPECT_EQ(files().Write(Full("read.txt"), "new").number(), kPathFileAccess);
  EXPECT_EQ(files().Copy(Full("a.txt"), Full("read.txt")).number(), kPathFileAccess);
  EXPECT_EQ(files().Delete(Full("read.txt")).number(), kPathFileAccess);
  EXPECT_EQ(Get("read.txt"), "old");
  EXPECT_TRUE(files().Move(Full("read.txt"), Full("moved.txt")).ok());
  EXPECT_EQ(Bits("moved.txt"), kAttributeReadOnly);
}

TEST_P(FileSystemContract, ACopyTakesContentsAndAttributes) {
  Put("a.txt", "source", kAttributeReadOnly | kAttributeHidden);
  Put("Target.txt", "old target");
  EXPECT_TRUE(files().Copy(Full("a.txt"), Full("new.txt")).ok());
  EXPECT_TRUE(files().Copy(Full("a.txt"), Full("TARGET.TXT")).ok());
  EXPECT_EQ(Get("new.txt"), "source");
  EXPECT_EQ(Get("target.txt"), "source");
  EXPECT_EQ(Bits("new.txt"), kAttributeReadOnly | kAttributeHidden);
  EXPECT_EQ(Found(Full("*")), "a.txt new.txt Target.txt");
  EXPECT_EQ(files().Copy(Full("a.txt"), Full("A.TXT")).number(), kPermissionDenied);
}

TEST_P(FileSystemContract, AReplacementTakesTheNameAndTheAttributesOfTheOldFile) {
  struct Case {
    const char* what;
    std::uint32_t source;
    std::uint32_t target;
  };
  constexpr Case kCases[] = {
      {"neither has any", 0, 0},
      {"the target is hidden", 0, kAttributeHidden | kAttributeSystem},
      {"the source is hidden", kAttributeHidden, 0},
      {"the source is read-only", kAttributeReadOnly, kAttributeHidden},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.what);
    Put("new.txt", "new", row.source);
    Put("Target.txt", "old");
    EXPECT_TRUE(files().SetAttributes(Full("Target.txt"), row.target).ok());
    EXPECT_TRUE(files().Replace(Full("NEW.TXT"), Full("TARGET.TXT")).ok());
    EXPECT_EQ(Found(Full("*")), "Target.txt");
    EXPECT_EQ(Get("target.txt"), "new");
    EXPECT_EQ(Bits("target.txt"), row.target);
  }
}

TEST_P(FileSystemContract, AReplacementThatIsRefusedChangesNothing) {
  Put("new.txt", "new", kAttributeHidden);
  Put("old.txt", "old", kAttributeReadOnly);
  EXPECT_EQ(files().Replace(Full("new.txt"), Full("old.txt")).number(), kPathFileAccess);
  EXPECT_EQ(Bits("old.txt"), kAttributeReadOnly);
  EXPECT_EQ(files().Replace(Full("new.txt"), Full("NEW.TXT")).number(), kPermissionDenied);
  EXPECT_EQ(Found(Full("*")), "new.txt old.txt");
  EXPECT_EQ(Get("new.txt"), "new");
  EXPECT_EQ(Bits("new.txt"), kAttributeHidden);
  EXPECT_EQ(Get("old.txt"), "old");
}

TEST_P(FileSystemContract, AReplacementByAFileInUseLeavesBothAsTheyWere) {
  Put("held.txt", "held", kAttributeReadOnly | kAttributeHidden);
  Put("old.txt", "old", kAttributeSystem);
  const std::shared_ptr<void> holder = HoldOpen("held.txt");
  EXPECT_EQ(files().Replace(Full("held.txt"), Full("old.txt")).number(), kPermissionDenied);
  EXPECT_EQ(Bits("held.txt"), kAttributeReadOnly | kAttributeHidden);
  EXPECT_EQ(Bits("old.txt"), kAttributeSystem);
  EXPECT_EQ(Get("held.txt"), "held");
  EXPECT_EQ(Get("old.txt"), "old");
}

TEST_P(FileSystemContract, AMoveTakesNoExistingName) {
  Put("a.txt", "a");
  Put("b.txt", "b");
  EXPECT_TRUE(files().CreateFolder(Full("Dir")).ok());
  EXPECT_EQ(files().Move(Full("a.txt"), Full("B.txt")).number(), kFileAlreadyExists);
  EXPECT_EQ(files().Move(Full("a.txt"), Full("Dir")).number(), kFileAlreadyExists);
  EXPECT_EQ(files().Move(Full("Dir"), Full("a.txt")).number(), kFileAlreadyExists);
  EXPECT_TRUE(files().Move(Full("a.txt"), Full(R"(Dir\c.txt)")).ok());
  EXPECT_TRUE(files().Move(Full("Dir"), Full("Dir2")).ok());
  EXPECT_EQ(Get(R"(Dir2\c.txt)"), "a");
  EXPECT_EQ(files().Move(Full("Dir2"), Full(R"(Dir2\x)")).number(), kInvalidProcedureCall);
}

TEST_P(FileSystemContract, AMoveOntoItselfSucceeds) {
  Put("a.txt", "a");
  EXPECT_TRUE(files().Move(Full("a.txt"), Full("a.txt")).ok());
  EXPECT_EQ(Get("a.txt"), "a");
}

TEST_P(FileSystemContract, ADeletedFileIsGone) {
  Put("a.txt", "a", kAttributeHidden | kAttributeSystem);
  EXPECT_TRUE(files().Delete(Full("A.txt")).ok());
  EXPECT_EQ(files().Delete(Full("a.txt")).number(), kFileNotFound);
}

TEST_P(FileSystemContract, FindsFilesAndFoldersOfAnyAttributeSorted) {
  for (const char* name : {"b.txt", "C.txt", "a.txt", "d.tmpx"}) Put(name, "12");
  Put("hidden.txt", "", kAttributeHidden);
  EXPECT_TRUE(files().CreateFolder(Full("Folder.txt")).ok());
  EXPECT_EQ(Found(Full("*.txt")), "a.txt b.txt C.txt Folder.txt hidden.txt");
  EXPECT_EQ(Found(Full("*")), "a.txt b.txt C.txt d.tmpx Folder.txt hidden.txt");
  EXPECT_EQ(Found("?.TXT"), "a.txt b.txt C.txt");  // in the current folder
  EXPECT_EQ(Found(Full("*.tmp")), "");             // never by a short name
  EXPECT_EQ(Found(Full("c.TXT")), "C.txt");
  EXPECT_EQ(Found(Full("")), "");
  const auto entries = files().Find(Full("b.txt"));
  ASSERT_TRUE(entries.ok());
  EXPECT_EQ(entries.value().at(0).size, 2U);
}

TEST_P(FileSystemContract, AFileThatAnotherProcessHoldsIsInUse) {
  Put("a.txt", "a");
  Put("held.txt", "held");
  {
    const std::shared_ptr<void> holder = HoldOpen("held.txt");
    EXPECT_EQ(files().Copy(Full("a.txt"), Full("held.txt")).number(), kPermissionDenied);
    EXPECT_EQ(files().Write(Full("held.txt"), "new").number(), kPermissionDenied);
    EXPECT_EQ(files().Delete(Full("held.txt")).number(), kPermissionDenied);
    EXPECT_EQ(files().Move(Full("held.txt"), Full("new.txt")).number(), kPermissionDenied);
    EXPECT_EQ(files().Replace(Full("a.txt"), Full("held.txt")).number(), kPermissionDenied);
    EXPECT_EQ(files().Replace(Full("held.txt"), Full("a.txt")).number(), kPermissionDenied);
    EXPECT_TRUE(files().Copy(Full("held.txt"), Full("copy.txt")).ok());
    EXPECT_EQ(Get("held.txt"), "held");
    EXPECT_EQ(Get("a.txt"), "a");
  }
  EXPECT_TRUE(files().Copy(Full("a.txt"), Full("held.txt")).ok());
  EXPECT_TRUE(files().Delete(Full("held.txt")).ok());
}

}  // namespace zent::testing
