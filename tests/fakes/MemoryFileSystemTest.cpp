#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "fakes/MemoryFileSystem.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> NamesOf(const Result<std::vector<FileEntry>>& found) {
  std::vector<std::string> names;
  if (!found.ok()) return {"error " + std::to_string(found.number())};
  for (const FileEntry& entry : found.value()) names.push_back(entry.name);
  return names;
}

struct FullPathCase {
  const char* what;
  std::string_view path;
  std::string_view full;
};

constexpr FullPathCase kFullPathCases[] = {
    {"full already", R"(C:\a\b.txt)", R"(C:\a\b.txt)"},
    {"small drive letter", R"(c:\a)", R"(C:\a)"},
    {"slashes", "C:/a/b", R"(C:\a\b)"},
    {"relative", "b.txt", R"(C:\Package\b.txt)"},
    {"from the root of the drive", R"(\b.txt)", R"(C:\b.txt)"},
    {"dots", R"(.\x\..\y)", R"(C:\Package\y)"},
    {"never above the root", R"(C:\..\..\a)", R"(C:\a)"},
    {"trailing dots and blanks of names", R"(C:\a. \b..)", R"(C:\a\b)"},
    {"trailing backslash stays", R"(C:\a\)", R"(C:\a\)"},
    {"root", R"(C:\)", R"(C:\)"},
    {"doubled backslashes", R"(C:\a\\b)", R"(C:\a\b)"},
};

TEST(MemoryFileSystem, MakesFullPaths) {
  MemoryFileSystem files;
  files.SetCurrentFolder(R"(C:\Package)");
  for (const FullPathCase& row : kFullPathCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(files.FullPath(row.path).value_or("error"), row.full);
  }
}

TEST(MemoryFileSystem, TellsMissingFilesFoldersAndBadNames) {
  MemoryFileSystem files;
  EXPECT_EQ(files.Attributes(R"(C:\none.txt)").number(), kFileNotFound);
  EXPECT_EQ(files.Attributes(R"(C:\none\none.txt)").number(), kPathNotFound);
  EXPECT_EQ(files.Attributes(R"(Q:\none.txt)").number(), kPathNotFound);
  EXPECT_EQ(files.Attributes(R"(Q:\)").number(), kPathNotFound);
  EXPECT_EQ(files.Attributes("").number(), kPathNotFound);
  EXPECT_EQ(files.Write(R"(C:\a*.txt)", "").number(), kBadFileName);
  EXPECT_EQ(files.Write(R"(C:\)" + std::string(260, 'x'), "").number(), kPathFileAccess);
}

TEST(MemoryFileSystem, KeepsAttributesAndFindsInAnyCase) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\Data\Mixed.txt)", "1", kAttributeHidden);
  EXPECT_EQ(files.Attributes(R"(c:\dATA\MIXED.TXT)").value(), kAttributeHidden);
  EXPECT_EQ(files.Attributes(R"(C:\Data\)").value(), kAttributeFolder);
  EXPECT_TRUE(files.SetAttributes(R"(C:\Data)", kAttributeHidden).ok());
  EXPECT_EQ(files.Attributes(R"(C:\Data)").value(), kAttributeFolder | kAttributeHidden);
  EXPECT_TRUE(files.SetAttributes(R"(C:\Data\Mixed.txt)", kAttributeNormal).ok());
  EXPECT_EQ(files.Attributes(R"(C:\Data\Mixed.txt)").value(), 0U);
}

TEST(MemoryFileSystem, FindsByWildcardInOrder) {
  MemoryFileSystem files;
  for (const char* const name : {"b.TXT", "A.txt", "c.txtx", "plain", "sub\\d.txt"}) {
    files.PutFile(R"(C:\F\)" + std::string(name), "");
  }
  EXPECT_THAT(NamesOf(files.Find(R"(c:\f\*.txt)")), ElementsAre("A.txt", "b.TXT"));
  EXPECT_THAT(NamesOf(files.Find(R"(C:\F\*.*)")),
              ElementsAre("A.txt", "b.TXT", "c.txtx", "plain", "sub"));
  EXPECT_THAT(NamesOf(files.Find(R"(C:\F\?.txt)")), ElementsAre("A.txt", "b.TXT"));
  EXPECT_THAT(NamesOf(files.Find(R"(C:\F\PLAIN)")), ElementsAre("plain"));
  EXPECT_THAT(NamesOf(files.Find(R"(C:\F\none*)")), IsEmpty());
  EXPECT_THAT(NamesOf(files.Find(R"(C:\none\*)")), ElementsAre("error 76"));
  EXPECT_THAT(NamesOf(files.Find(R"(C:\*)")), ElementsAre("F"));
  files.SetCurrentFolder(R"(C:\F\sub)");
  EXPECT_THAT(NamesOf(files.Find("*")), ElementsAre("d.txt"));
}

TEST(MemoryFileSystem, AnOpenFileStaysReadableAsItWas) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\a.txt)", "old");
  const Result<std::unique_ptr<File>> file = files.OpenForReading(R"(C:\a.txt)");
  ASSERT_TRUE(file.ok());
  EXPECT_TRUE(files.Write(R"(C:\A.TXT)", "newer").ok());

  std::string buffer(9, ' ');
  EXPECT_EQ(file.value()->Size().value(), 3U);
  EXPECT_EQ(file.value()->ReadAt(1, buffer).value(), 2U);
  EXPECT_EQ(file.value()->ReadAt(3, buffer).value(), 0U);
  EXPECT_EQ(ReadWholeFile(files, R"(C:\a.txt)").value_or(""), "newer");
  EXPECT_THAT(files.AllFiles(), ElementsAre(R"(C:\a.txt)"));
}

TEST(MemoryFileSystem, RefusesReadOnlyFilesAndFolders) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\a.txt)", "1", kAttributeReadOnly);
  files.PutFile(R"(C:\b.txt)", "2");
  files.PutFolder(R"(C:\Sub)");
  EXPECT_EQ(files.Write(R"(C:\a.txt)", "").number(), kPathFileAccess);
  EXPECT_EQ(files.Copy(R"(C:\b.txt)", R"(C:\a.txt)").number(), kPathFileAccess);
  EXPECT_EQ(files.Delete(R"(C:\a.txt)").number(), kPathFileAccess);
  EXPECT_EQ(files.Write(R"(C:\Sub)", "").number(), kPathFileAccess);
  EXPECT_EQ(files.OpenForReading(R"(C:\Sub)").number(), kPathFileAccess);
  EXPECT_EQ(files.Delete(R"(C:\Sub)").number(), kPathFileAccess);
  EXPECT_EQ(files.Contents(R"(C:\a.txt)"), "1");
}

TEST(MemoryFileSystem, RefusesFilesInUse) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\a.txt)", "1");
  files.PutFile(R"(C:\b.txt)", "2");
  files.HoldOpen(R"(C:\a.txt)");
  EXPECT_EQ(files.Write(R"(C:\a.txt)", "").number(), kPermissionDenied);
  EXPECT_EQ(files.Copy(R"(C:\b.txt)", R"(C:\a.txt)").number(), kPermissionDenied);
  EXPECT_EQ(files.Move(R"(C:\a.txt)", R"(C:\c.txt)").number(), kPermissionDenied);
  EXPECT_EQ(files.Delete(R"(C:\a.txt)").number(), kPermissionDenied);
  EXPECT_TRUE(files.OpenForReading(R"(C:\a.txt)").ok());
  files.HoldOpen(R"(C:\a.txt)", false);
  EXPECT_EQ(files.OpenForReading(R"(C:\a.txt)").number(), kPermissionDenied);
  EXPECT_EQ(files.Copy(R"(C:\a.txt)", R"(C:\c.txt)").number(), kPermissionDenied);
  files.Release(R"(C:\a.txt)");
  EXPECT_TRUE(files.Delete(R"(C:\a.txt)").ok());
  EXPECT_FALSE(files.Exists(R"(C:\a.txt)"));
}

TEST(MemoryFileSystem, ALoadedFileCanOnlyBeReadAndRenamed) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\a.dll)", "1");
  files.PutFile(R"(C:\b.dll)", "2");
  files.HoldLoaded(R"(C:\a.dll)");
  EXPECT_EQ(files.Copy(R"(C:\b.dll)", R"(C:\a.dll)").number(), kPermissionDenied);
  EXPECT_EQ(files.Delete(R"(C:\a.dll)").number(), kPermissionDenied);
  EXPECT_TRUE(files.Copy(R"(C:\a.dll)", R"(C:\c.dll)").ok());
  EXPECT_TRUE(files.Move(R"(C:\a.dll)", R"(C:\old.dll)").ok());
  EXPECT_EQ(files.Delete(R"(C:\old.dll)").number(), kPermissionDenied) << "still loaded";
  EXPECT_TRUE(files.Delete(R"(C:\c.dll)").ok());
}

TEST(MemoryFileSystem, DoesNotCopyOverAHiddenFile) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\a.txt)", "1");
  files.PutFile(R"(C:\hidden.txt)", "2", kAttributeHidden);
  EXPECT_EQ(files.Copy(R"(C:\a.txt)", R"(C:\hidden.txt)").number(), kPathFileAccess);
  EXPECT_EQ(files.Contents(R"(C:\hidden.txt)"), "2");
}

TEST(MemoryFileSystem, CopiesContentsAndAttributes) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\a.txt)", "1", kAttributeHidden);
  files.PutFile(R"(C:\Old.txt)", "2");
  EXPECT_TRUE(files.Copy(R"(C:\a.txt)", R"(C:\new.txt)").ok());
  EXPECT_TRUE(files.Copy(R"(C:\a.txt)", R"(C:\OLD.TXT)").ok());
  EXPECT_EQ(files.Contents(R"(C:\new.txt)"), "1");
  EXPECT_EQ(files.Attributes(R"(C:\new.txt)").value(), kAttributeHidden);
  EXPECT_THAT(files.AllFiles(), ElementsAre(R"(C:\a.txt)", R"(C:\new.txt)", R"(C:\Old.txt)"));
  EXPECT_EQ(files.Copy(R"(C:\none.txt)", R"(C:\x.txt)").number(), kFileNotFound);
  EXPECT_EQ(files.Copy(R"(C:\a.txt)", R"(C:\none\x.txt)").number(), kPathNotFound);
}

TEST(MemoryFileSystem, AReplacementKeepsTheAttributesOfTheTarget) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\new.txt)", "new", kAttributeReadOnly);
  files.PutFile(R"(C:\Old.txt)", "old", kAttributeHidden);
  files.PutFile(R"(C:\read.txt)", "read", kAttributeReadOnly);
  EXPECT_EQ(files.Replace(R"(C:\new.txt)", R"(C:\none.txt)").number(), kFileNotFound);
  EXPECT_EQ(files.Replace(R"(C:\none.txt)", R"(C:\old.txt)").number(), kFileNotFound);
  EXPECT_EQ(files.Replace(R"(C:\new.txt)", R"(C:\read.txt)").number(), kPathFileAccess);
  for (const char* held : {R"(C:\new.txt)", R"(C:\old.txt)"}) {
    files.HoldOpen(held);
    EXPECT_EQ(files.Replace(R"(C:\new.txt)", R"(C:\old.txt)").number(), kPermissionDenied);
    files.Release(held);
  }
  EXPECT_TRUE(files.Replace(R"(C:\new.txt)", R"(C:\old.txt)").ok());
  EXPECT_THAT(files.AllFiles(), ElementsAre(R"(C:\Old.txt)", R"(C:\read.txt)"));
  EXPECT_EQ(files.Contents(R"(C:\old.txt)"), "new");
  EXPECT_EQ(files.Attributes(R"(C:\old.txt)").value_or(0), kAttributeHidden);
}

TEST(MemoryFileSystem, MovesFilesAndWholeFolders) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\A\sub\x.txt)", "1");
  files.PutFile(R"(C:\Ab.txt)", "2");
  EXPECT_TRUE(files.Move(R"(C:\a)", R"(C:\B)").ok());
  EXPECT_THAT(files.AllFiles(), ElementsAre(R"(C:\Ab.txt)", R"(C:\B\sub\x.txt)"));
  EXPECT_FALSE(files.Exists(R"(C:\A\sub)"));
  EXPECT_EQ(files.Move(R"(C:\Ab.txt)", R"(C:\B)").number(), kFileAlreadyExists);
  EXPECT_TRUE(files.Move(R"(C:\Ab.txt)", R"(C:\aB.txt)").ok());
  EXPECT_THAT(files.AllFiles(), ElementsAre(R"(C:\aB.txt)", R"(C:\B\sub\x.txt)"));
  EXPECT_EQ(files.Move(R"(C:\none.txt)", R"(C:\x.txt)").number(), kFileNotFound);
  EXPECT_EQ(files.Move(R"(C:\aB.txt)", R"(C:\none\x.txt)").number(), kPathNotFound);
}

TEST(MemoryFileSystem, CreatesTheLastLevelOfAFolderOnly) {
  MemoryFileSystem files;
  EXPECT_EQ(files.CreateFolder(R"(C:\A\B)").number(), kPathNotFound);
  EXPECT_TRUE(files.CreateFolder(R"(C:\A)").ok());
  EXPECT_TRUE(files.CreateFolder(R"(C:\A\B\)").ok());
  EXPECT_EQ(files.CreateFolder(R"(C:\a)").number(), kPathFileAccess);
}

TEST(MemoryFileSystem, ACallToldToFailChangesNothing) {
  MemoryFileSystem files;
  files.PutFile(R"(C:\a.txt)", "1");
  files.log().FailChange(2, StandardError(kDiskFull));
  files.log().FailWhere("OpenForReading", StandardError(kDeviceIoError));
  EXPECT_TRUE(files.Write(R"(C:\a.txt)", "2").ok());
  EXPECT_EQ(files.Write(R"(C:\a.txt)", "3").number(), kDiskFull);
  EXPECT_EQ(files.OpenForReading(R"(C:\a.txt)").number(), kDeviceIoError);
  EXPECT_EQ(files.Contents(R"(C:\a.txt)"), "2");
  EXPECT_THAT(files.log().changes(), ElementsAre(R"(Write C:\a.txt)", R"(Write C:\a.txt)"));
}

}  // namespace
}  // namespace zent::testing
