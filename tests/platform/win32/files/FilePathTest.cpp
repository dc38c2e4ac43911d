#include <gtest/gtest.h>
#include <windows.h>

#include "platform/win32/files/FilePath.h"

namespace zent {
namespace {

constexpr const char* kCurrent = R"(C:\Korvo\Update)";

struct FullCase {
  const char* what;
  const char* path;
  const char* full;
};

constexpr FullCase kFullCases[] = {
    {"a full path stays", R"(C:\a\b.txt)", R"(C:\a\b.txt)"},
    {"slashes", "C:/a/b.txt", R"(C:\a\b.txt)"},
    {"doubled separators", R"(C:\\a\\\b.txt)", R"(C:\a\b.txt)"},
    {"a trailing backslash stays", R"(C:\a\)", R"(C:\a\)"},
    {"a folder and its parent", R"(C:\a\..\b\.\c)", R"(C:\b\c)"},
    {"never above the root", R"(C:\..\..\a)", R"(C:\a)"},
    {"never above the root, relative", R"(..\..\..\..\a)", R"(C:\a)"},
    {"relative", "b.txt", R"(C:\Korvo\Update\b.txt)"},
    {"relative to the drive's current folder", "C:b.txt", R"(C:\Korvo\Update\b.txt)"},
    {"relative to the drive, in the other case", "c:b.txt", R"(C:\Korvo\Update\b.txt)"},
    {"relative to another drive", R"(D:b\c)", R"(D:\b\c)"},
    {"a drive alone is its current folder", "C:", R"(C:\Korvo\Update\)"},
    {"another drive alone is its root", "D:", R"(D:\)"},
    {"relative to the root", R"(\a)", R"(C:\a)"},
    {"relative to the root, with a slash", "/a", R"(C:\a)"},
    {"the current folder", ".", R"(C:\Korvo\Update)"},
    {"final dots and blanks", "C:\\a\\b.txt. . ", R"(C:\a\b.txt)"},
    {"one dot behind a folder's name", R"(C:\a.\b)", R"(C:\a\b)"},
    {"a blank behind a folder's name stays", R"(C:\a \b)", R"(C:\a \b)"},
    {"a leading blank makes a name", R"( C:\a)", R"(C:\Korvo\Update\ C:\a)"},
    {"a share", R"(\\server\share\a\..\b)", R"(\\server\share\b)"},
    {"never above the share", R"(\\server\share\..\..\b)", R"(\\server\share\b)"},
    {"a share with slashes", "//server/share/b", R"(\\server\share\b)"},
    {"a literal path", R"(\\?\C:\a\b)", R"(\\?\C:\a\b)"},
    {"a device path", R"(\\.\C:\a\..\b)", R"(\\.\C:\b)"},
    {"a device", "nul", R"(\\.\nul)"},
    {"a device in a folder", R"(C:\a\COM1)", R"(\\.\COM1)"},
    {"a device with an extension and blanks", "Aux  .txt", R"(\\.\Aux)"},
    {"no device: a longer name", "C:\\COM10", R"(C:\COM10)"},
    {"a letter of the code page", "C:\\\xC3\xA4\xE2\x82\xAC", "C:\\\xC3\xA4\xE2\x82\xAC"},
};

TEST(FullPathOf, ReadsAsTheSystemHasIt) {
  for (const FullCase& row : kFullCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(FullPathOf(row.path, kCurrent).value_or("failed"), row.full);
  }
}

TEST(FullPathOf, KnowsACurrentFolderAtARoot) {
  EXPECT_EQ(FullPathOf("a", R"(D:\)").value_or(""), R"(D:\a)");
  EXPECT_EQ(FullPathOf("..", R"(D:\)").value_or(""), R"(D:\)");
  EXPECT_EQ(FullPathOf("D:", R"(D:\)").value_or(""), R"(D:\)");
}

TEST(FullPathOf, KnowsACurrentFolderOnAShare) {
  constexpr const char* kShared = R"(\\server\share\Update)";
  EXPECT_EQ(FullPathOf("a", kShared).value_or(""), R"(\\server\share\Update\a)");
  EXPECT_EQ(FullPathOf(R"(..\..\..\a)", kShared).value_or(""), R"(\\server\share\a)");
  EXPECT_EQ(FullPathOf(R"(\a)", kShared).value_or(""), R"(\\server\share\a)");
  EXPECT_EQ(FullPathOf("C:a", kShared).value_or(""), R"(C:\a)");
}

TEST(FullPathOf, DoesNotAskTheProcessWhereItIs) {
  char before[MAX_PATH] = {};
  GetCurrentDirectoryA(MAX_PATH, before);
  SetCurrentDirectoryA(R"(C:\windows)");
  for (const char* path : {"a", "C:a", R"(.\a)"}) {
    EXPECT_EQ(FullPathOf(path, kCurrent).value_or(""), R"(C:\Korvo\Update\a)");
  }
  EXPECT_EQ(FullPathOf("C:a", R"(D:\b)").value_or(""), R"(C:\a)");
  SetCurrentDirectoryA(before);
}

TEST(FullPathOf, RefusesNothingTooMuchAndWhatTheCodePageLacks) {
  EXPECT_EQ(FullPathOf("", kCurrent).number(), kPathNotFound);
  EXPECT_EQ(FullPathOf("  ", kCurrent).number(), kPathNotFound);
  const std::string longest = R"(C:\)" + std::string(256, 'x');
  EXPECT_EQ(FullPathOf(longest, kCurrent).value_or(""), longest);
  EXPECT_EQ(FullPathOf(longest + "x", kCurrent).number(), kPathFileAccess);
  EXPECT_EQ(FullPathOf(R"(C:\)" + std::string(40'000, 'x'), kCurrent).number(), kPathFileAccess);
  EXPECT_EQ(FullPathOf("C:\\greek\xCE\xB1", kCurrent).number(), kBadFileName);
  EXPECT_EQ(FullPathOf("C:\\latin\xE4", kCurrent).number(), kBadFileName);
  EXPECT_EQ(FullPathOf(std::string("C:\\a\0b", 6), kCurrent).number(), kBadFileName);
}

struct RefusedCase {
  const char* what;
  const char* path;
  int error;
};

constexpr RefusedCase kRefusedCases[] = {
    {"a bar", R"(C:\a|b)", kBadFileName},
    {"a tab", "C:\\a\tb", kBadFileName},
    {"a stream of a file", R"(C:\a.txt:stream)", kBadFileName},
    {"a stream by its type", R"(C:\a.txt::$DATA)", kBadFileName},
    {"a stream of a file on a share", R"(\\server\share\a.txt:stream)", kBadFileName},
    {"a colon in a folder's name", R"(C:\a:b\c)", kPathNotFound},
    {"a device", R"(C:\a\NUL)", kBadFileName},
    {"a device with an extension", "con.txt", kBadFileName},
    {"a device by its own path", R"(\\.\COM1)", kBadFileName},
    {"a disk", R"(\\.\PhysicalDrive0)", kBadFileName},
    {"a device in a literal path", R"(\\?\C:\NUL)", kBadFileName},
    {"a share in a literal path", R"(\\?\UNC\server\share\a)", kPathNotFound},
    {"a path of the host in a literal path", R"(\\?\unix\etc\passwd)", kPathNotFound},
    {"a parent in a literal path", R"(\\?\C:\a\..\b)", kBadFileName},
    {"a slash in a literal path", R"(\\?\C:\a/../b)", kBadFileName},
    {"a doubled backslash in a literal path", R"(\\?\C:\a\\b)", kBadFileName},
    {"a final dot in a literal path", R"(\\?\C:\a.)", kBadFileName},
    {"three dots as a folder, of which two are left", R"(C:\a\...\b)", kPathNotFound},
    {"two dots behind a folder's name, of which one is left", R"(C:\a..\b)", kPathNotFound},
    {"a digit as a drive", R"(1:\a)", kPathNotFound},
    {"nothing", "", kPathNotFound},
};

TEST(ParseFilePath, RefusesWhatTheCallsWouldTakeForSomethingElse) {
  for (const RefusedCase& row : kRefusedCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ParseFilePath(row.path, kCurrent).number(), row.error);
  }
}

TEST(ParseFilePath, AMissingDriveIsAMissingPath) {
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const bool there = (GetLogicalDrives() >> static_cast<unsigned>(letter - 'A') & 1U) != 0;
    const std::string path = {letter, ':', '\\', 'a'};
    EXPECT_EQ(ParseFilePath(path, kCurrent).number(), there ? 0 : kPathNotFound) << path;
  }
}

TEST(ParseFilePath, GivesTheTextForTheCalls) {
  const Result<FilePath> path = ParseFilePath("C:/A b/\xC3\xA4.txt", kCurrent);
  ASSERT_TRUE(path.ok());
  EXPECT_EQ(path.value().text, "C:\\A b\\\xC3\xA4.txt");
  EXPECT_EQ(path.value().ansi, "C:\\A b\\\xE4.txt");
  EXPECT_EQ(path.value().folder(), R"(C:\A b\)");
  EXPECT_EQ(path.value().name(), "\xC3\xA4.txt");
  EXPECT_FALSE(path.value().names_a_folder());
  EXPECT_TRUE(ParseFilePath(R"(C:\a\)", kCurrent).value().names_a_folder());
  EXPECT_EQ(ParseFilePath(R"(\\?\C:\a b\c)", kCurrent).value().text, R"(C:\a b\c)");
  EXPECT_EQ(ParseFilePath(R"(\\.\C:\a\..\c)", kCurrent).value().text, R"(C:\c)");
  EXPECT_EQ(ParseFilePath(R"(\\server\share\a)", kCurrent).value().text, R"(\\server\share\a)");
}

TEST(ParseFilePattern, TakesThePatternOff) {
  const Result<FilePattern> search = ParseFilePattern(R"(..\*.dll)", kCurrent);
  ASSERT_TRUE(search.ok());
  EXPECT_EQ(search.value().folder.text, R"(C:\Korvo\)");
  EXPECT_EQ(search.value().pattern, "*.dll");
  EXPECT_EQ(ParseFilePattern(R"(C:\a\)", kCurrent).value().pattern, "");
  EXPECT_EQ(ParseFilePattern(R"(C:\)", kCurrent).value().pattern, "");
  EXPECT_EQ(ParseFilePattern(R"(C:\a\b|*)", kCurrent).number(), kBadFileName);
  EXPECT_EQ(ParseFilePattern("*.", kCurrent).value().pattern, "*.");
  EXPECT_EQ(ParseFilePattern("*.*.", kCurrent).value().pattern, "*.*.");
  EXPECT_EQ(ParseFilePattern("a.", kCurrent).value().pattern, "a");
}

TEST(IsReachableName, TellsNamesThatAPathCanLeadTo) {
  for (const char* name : {"a", "a.txt", ".hidden", "a..b", " a", "two words", "\xC3\xA4", "[1]",
                           "\xE2\x82\xAC", "COM10"}) {
    EXPECT_TRUE(IsReachableName(name)) << name;
  }
  for (const char* name :
       {"", ".", "..", "a.", "a ", "a:b", "a\\b", "a/b", "a?b", "a*", "a\"", "a|b", "a\x01", "nul",
        "Com1.txt", "LPT9", "latin\xE4", "greek\xCE\xB1"}) {
    EXPECT_FALSE(IsReachableName(name)) << name;
  }
}

}  // namespace
}  // namespace zent
