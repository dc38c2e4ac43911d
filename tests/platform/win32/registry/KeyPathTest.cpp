#include <gtest/gtest.h>

#include "platform/win32/registry/KeyPath.h"

namespace zent {
namespace {

using namespace std::string_literals;

constexpr int kImpossible = kInvalidFileFormat;  // a number that nothing else gives

struct PathCase {
  const char* what;
  std::string path;
  int number;
  std::string ansi;
};

const std::string kLongest(255, 'k');

const PathCase kPathCases[] = {
    {"nothing", "", 0, ""},
    {"one name", "Software", 0, "Software"},
    {"some names", R"(Software\Korvo\X)", 0, R"(Software\Korvo\X)"},
    {"a trailing backslash goes", R"(Software\Korvo\)", 0, R"(Software\Korvo)"},
    {"several of them too", R"(Software\Korvo\\\)", 0, R"(Software\Korvo)"},
    {"doubled backslashes are one", R"(Software\\Korvo\\\X)", 0, R"(Software\Korvo\X)"},
    {"blanks stay", R"( a \ b )", 0, R"( a \ b )"},
    {"slashes stay", "a/b", 0, "a/b"},
    {"letters of the code page", "K\u00e4se\\\u20ac", 0, "K\xE4se\\\x80"},
    {"a leading backslash", R"(\Software)", kPathFileAccess, ""},
    {"a backslash alone", R"(\)", kPathFileAccess, ""},
    {"the longest name", "a\\" + kLongest, 0, "a\\" + kLongest},
    {"a name that is too long", "a\\" + kLongest + "k\\b", kImpossible, ""},
    {"a NUL", "Software\0x"s, kImpossible, ""},
    {"letters of another code page", "Software\\\u0416", kImpossible, ""},
};

TEST(AnsiKeyPath, IsWhatEverySystemTakes) {
  for (const PathCase& row : kPathCases) {
    SCOPED_TRACE(row.what);
    const Result<std::string> ansi = AnsiKeyPath(row.path, kImpossible);
    EXPECT_EQ(ansi.number(), row.number);
    EXPECT_EQ(ansi.value_or(""), row.ansi);
  }
}

TEST(AnsiKeyPath, CountsTheCharactersOfAName) {
  std::string name;
  for (int i = 0; i < 255; ++i) name += "\u00e4";
  EXPECT_TRUE(AnsiKeyPath(name, kImpossible).ok());
  EXPECT_EQ(AnsiKeyPath(name + "\u00e4", kImpossible).number(), kImpossible);
}

}  // namespace
}  // namespace zent
