#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/prefix/files/WindowsPath.h"

namespace zent {
namespace {

using ::testing::ElementsAre;

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
    {"the parent of a name with a final backslash", R"(C:\a\b\..\)", R"(C:\a\)"},
    {"relative", "b.txt", R"(C:\Korvo\Update\b.txt)"},
    {"relative to the drive's current folder", "C:b.txt", R"(C:\Korvo\Update\b.txt)"},
    {"relative to the drive, in the other case", "c:b.txt", R"(C:\Korvo\Update\b.txt)"},
    {"relative to another drive", R"(D:b\c)", R"(D:\b\c)"},
    {"a drive alone is its current folder", "C:", R"(C:\Korvo\Update\)"},
    {"another drive alone is its root", "D:", R"(D:\)"},
    {"relative to the root", R"(\a)", R"(C:\a)"},
    {"the current folder", ".", R"(C:\Korvo\Update)"},
    {"final dots and blanks", "C:\\a\\b.txt. . ", R"(C:\a\b.txt)"},
    {"a name of dots", R"(C:\a\...)", R"(C:\a\)"},
    {"a blank as the last name", "C:\\a\\ ", R"(C:\a\)"},
    {"one dot behind a folder's name", R"(C:\a.\b)", R"(C:\a\b)"},
    {"two dots behind a folder's name", R"(C:\a..\b)", R"(C:\a.\b)"},
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
    {"a device with a colon", "C:PRN:", R"(\\.\PRN)"},
    {"no device: a longer name", "C:\\COM10", R"(C:\COM10)"},
    {"no device: a folder of that name", R"(C:\nul\a)", R"(C:\nul\a)"},
};

TEST(FullWindowsPath, ReadsAsTheSystemHasIt) {
  for (const FullCase& row : kFullCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(FullWindowsPath(row.path, kCurrent).value_or("failed"), row.full);
  }
}

TEST(FullWindowsPath, KnowsACurrentFolderAtTheRoot) {
  EXPECT_EQ(FullWindowsPath("a", R"(D:\)").value_or(""), R"(D:\a)");
  EXPECT_EQ(FullWindowsPath("..", R"(D:\)").value_or(""), R"(D:\)");
  EXPECT_EQ(FullWindowsPath("D:", R"(D:\)").value_or(""), R"(D:\)");
}

TEST(FullWindowsPath, RefusesNothingAndTooMuch) {
  EXPECT_EQ(FullWindowsPath("", kCurrent).number(), kPathNotFound);
  EXPECT_EQ(FullWindowsPath("  ", kCurrent).number(), kPathNotFound);
  const std::string longest = R"(C:\)" + std::string(256, 'x');
  EXPECT_TRUE(FullWindowsPath(longest, kCurrent).ok());
  EXPECT_EQ(FullWindowsPath(longest + "x", kCurrent).number(), kPathFileAccess);
  EXPECT_TRUE(FullWindowsPath(R"(\\?\)" + longest + "x", kCurrent).ok());
}

TEST(FullWindowsPath, CountsCharactersRatherThanBytes) {
  std::string name;
  for (int i = 0; i < 250; ++i) name += "\xC3\xA4";
  EXPECT_TRUE(FullWindowsPath(R"(C:\)" + name, kCurrent).ok());
}

struct RefusedCase {
  const char* what;
  std::string path;
  int error;
};

const RefusedCase kRefusedCases[] = {
    {"a wildcard", R"(C:\a\*.txt)", kBadFileName},
    {"a wildcard in a folder's name", R"(C:\a?\b.txt)", kBadFileName},
    {"a bar", R"(C:\a|b)", kBadFileName},
    {"an angle", R"(C:\a<b\c)", kBadFileName},
    {"a quote", R"(C:\"a")", kBadFileName},
    {"a tab", "C:\\a\tb", kBadFileName},
    {"a NUL", std::string("C:\\a\0b", 6), kBadFileName},
    {"bytes that are no text", "C:\\latin\xE4", kBadFileName},
    {"a stream of a file", R"(C:\a.txt:stream)", kBadFileName},
    {"a colon in a folder's name", R"(C:\a:b\c)", kPathNotFound},
    {"a device", R"(C:\a\NUL)", kBadFileName},
    {"a device with an extension", "con.txt", kBadFileName},
    {"a device with a trailing backslash", R"(C:\a\NUL\)", kBadFileName},
    {"a device by its own path", R"(\\.\COM1)", kBadFileName},
    {"a device in a literal path", R"(\\?\C:\NUL)", kBadFileName},
    {"a disk", R"(\\.\PhysicalDrive0)", kPathNotFound},
    {"a share", R"(\\server\share\a)", kPathNotFound},
    {"a server", R"(\\server)", kPathNotFound},
    {"a share in a literal path", R"(\\?\UNC\server\share\a)", kPathNotFound},
    {"a parent in a literal path", R"(\\?\C:\a\..\b)", kPathNotFound},
    {"a parent at the end of a literal path", R"(\\?\C:\a\..)", kBadFileName},
    {"a slash in a literal path", R"(\\?\C:\a/../b)", kBadFileName},
    {"a doubled backslash in a literal path", R"(\\?\C:\a\\b)", kPathNotFound},
    {"a final dot in a literal path", R"(\\?\C:\a.)", kBadFileName},
    {"three dots as a folder, of which two are left", R"(C:\a\...\b)", kPathNotFound},
    {"a digit as a drive", R"(1:\a)", kPathNotFound},
    {"nothing", "", kPathNotFound},
};

TEST(ParseWindowsPath, RefusesWhatNoDiskMayMeet) {
  for (const RefusedCase& row : kRefusedCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ParseWindowsPath(row.path, kCurrent).number(), row.error);
  }
}

TEST(ParseWindowsPath, GivesTheParts) {
  const Result<WindowsPath> path = ParseWindowsPath(R"(c:\A b\c.txt)", kCurrent);
  ASSERT_TRUE(path.ok());
  EXPECT_EQ(path.value().drive, 'C');
  EXPECT_THAT(path.value().parts, ElementsAre("A b", "c.txt"));
  EXPECT_FALSE(path.value().names_a_folder);
  EXPECT_EQ(PathText('C', path.value().parts), R"(C:\A b\c.txt)");

  EXPECT_TRUE(ParseWindowsPath(R"(C:\a\)", kCurrent).value().names_a_folder);
  EXPECT_THAT(ParseWindowsPath(R"(C:\)", kCurrent).value().parts, ElementsAre());
  EXPECT_THAT(ParseWindowsPath(R"(\\?\C:\a b\c)", kCurrent).value().parts, ElementsAre("a b", "c"));
  EXPECT_THAT(ParseWindowsPath(R"(\\.\C:\a\..\c)", kCurrent).value().parts, ElementsAre("c"));
  EXPECT_EQ(PathText('D', {}), R"(D:\)");
}

TEST(ParseSearchPath, TakesThePatternOff) {
  const Result<SearchPath> search = ParseSearchPath(R"(..\*.dll)", kCurrent);
  ASSERT_TRUE(search.ok());
  EXPECT_THAT(search.value().folder.parts, ElementsAre("Korvo"));
  EXPECT_EQ(search.value().pattern, "*.dll");
  EXPECT_EQ(ParseSearchPath(R"(C:\a\)", kCurrent).value().pattern, "");
  EXPECT_EQ(ParseSearchPath(R"(C:\)", kCurrent).value().pattern, "");
  EXPECT_EQ(ParseSearchPath(R"(C:\a*\b)", kCurrent).number(), kBadFileName);
  EXPECT_EQ(ParseSearchPath(R"(C:\a\b|*)", kCurrent).number(), kBadFileName);
}

TEST(ParseSearchPath, KeepsTheDotOfAStarAlone) {
  EXPECT_EQ(ParseSearchPath("*.", kCurrent).value().pattern, "*.");
  EXPECT_EQ(ParseSearchPath("*.*.", kCurrent).value().pattern, "*.*.");
  EXPECT_EQ(ParseSearchPath("a.", kCurrent).value().pattern, "a");
}

TEST(IsWindowsName, TellsNamesThatAFolderCanHold) {
  for (const char* name : {"a", "a.txt", ".hidden", "a..b", " a", "two words", "\xC3\xA4", "[1]"}) {
    EXPECT_TRUE(IsWindowsName(name)) << name;
  }
  for (const char* name : {"", ".", "..", "a.", "a ", "a:b", "a\\b", "a/b", "a?b", "a*", "a\"",
                           "a|b", "a\x01", "nul", "Com1.txt", "LPT9", "latin\xE4"}) {
    EXPECT_FALSE(IsWindowsName(name)) << name;
  }
}

TEST(IsDeviceName, KnowsTheDevices) {
  for (const char* name : {"CON", "con", "PRN", "AUX", "nul", "COM1", "com9", "LPT1", "NUL.txt",
                           "nul .tar.gz", "CONIN$", "COM\xC2\xB9"}) {
    EXPECT_TRUE(IsDeviceName(name)) << name;
  }
  for (const char* name : {"COM", "COM0", "COM10", "CONS", "NULL", "a.nul", "LPT", "", "CO"}) {
    EXPECT_FALSE(IsDeviceName(name)) << name;
  }
}

}  // namespace
}  // namespace zent
