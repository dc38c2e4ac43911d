#include <gtest/gtest.h>
#include <windows.h>

#include "base/ErrorNumbers.h"
#include "platform/win32/AnsiText.h"

namespace zent {
namespace {

struct TextCase {
  std::string_view what;
  std::string_view text;
  std::string_view ansi;
};

// With code page 1252, which the tests run under.
constexpr TextCase kTextCases[] = {
    {"nothing", "", ""},
    {"plain", R"(C:\Korvo\a.txt)", R"(C:\Korvo\a.txt)"},
    {"an umlaut",
     "Gr\xC3\xBC\xC3\x9F"
     "e",
     "Gr\xFC\xDF"
     "e"},
    {"the euro sign, outside Latin-1", "\xE2\x82\xAC", "\x80"},
    {"an undefined byte", "\xC2\x81", "\x81"},
};

TEST(AnsiText, ConvertsBothWays) {
  ASSERT_EQ(GetACP(), 1252U);
  for (const TextCase& row : kTextCases) {
    SCOPED_TRACE(row.what);
    const Result<std::string> ansi = AnsiOf(row.text);
    ASSERT_TRUE(ansi.ok());
    EXPECT_EQ(ansi.value(), row.ansi);
    EXPECT_EQ(TextOfAnsi(row.ansi), row.text);
    EXPECT_EQ(ShownAnsiOf(row.text), row.ansi);
  }
}

TEST(AnsiText, RefusesANameThatWouldBecomeAnother) {
  constexpr std::string_view kRefused[] = {"\xD0\x96.txt", std::string_view("a\0b", 3), "\xFF"};
  for (const std::string_view name : kRefused) {
    SCOPED_TRACE(name);
    const Result<std::string> ansi = AnsiOf(name);
    ASSERT_FALSE(ansi.ok());
    EXPECT_EQ(ansi.error().number, kBadFileName);
  }
}

TEST(AnsiText, ShowsAQuestionMarkForWhatTheCodePageLacks) {
  EXPECT_EQ(ShownAnsiOf("a\xD0\x96z"), "a?z");
}

}  // namespace
}  // namespace zent
