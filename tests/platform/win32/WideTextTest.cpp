#include <gtest/gtest.h>

#include "platform/win32/WideText.h"

namespace zent {
namespace {

struct WideCase {
  const char* what;
  std::string utf8;
  std::wstring wide;
};

const WideCase kWideCases[] = {
    {"nothing", "", L""},
    {"plain", "C:\\a", L"C:\\a"},
    {"a letter of two bytes", "\xC3\xA4", L"\u00E4"},
    {"a character of two units", "\xF0\x9F\x98\x80", L"\U0001F600"},
    {"a NUL within", std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
};

TEST(WideText, ConvertsBothWays) {
  for (const WideCase& row : kWideCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(WideOf(row.utf8), row.wide);
    EXPECT_EQ(Utf8Of(row.wide), row.utf8);
  }
}

TEST(WideText, MarksWhatIsBroken) {
  EXPECT_EQ(WideOf("a\xFF"), L"a\uFFFD");
  EXPECT_EQ(Utf8Of(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
}

}  // namespace
}  // namespace zent
