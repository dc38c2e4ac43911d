#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "ui/win32/LogText.h"

namespace zent {
namespace {

struct TextCase {
  const char* what;
  std::string text;
  bool after_cr;
  std::string ansi;  ///< in code page 1252
  std::size_t positions;
};

const TextCase kTextCases[] = {
    {"nothing", "", false, "", 0},
    {"letters and tabs as they are", "  a\tb", false, "  a\tb", 5},
    {"CR LF is one line end of two positions", "a\r\nb", false, "a\r\nb", 4},
    {"CR alone becomes one", "a\rb", false, "a\r\nb", 4},
    {"LF alone becomes one", "a\nb", false, "a\r\nb", 4},
    {"two CR are two", "\r\r", false, "\r\n\r\n", 4},
    {"LF CR are two", "\n\r", false, "\r\n\r\n", 4},
    {"a LF behind a CR of before ends nothing", "\nb", true, "b", 1},
    {"any other text behind it stands", "b\n", true, "b\r\n", 3},
    {"a letter of the code page", "\u00e4\u20ac", false, "\xE4\x80", 2},
    {"a letter without a place there", "\u65e5", false, "?", 1},
    {"one beyond the first plane is one mark too", "\U0001F600", false, "?", 1},
    {"broken bytes are one each", "\xFF\xFF", false, "??", 2},
    {"NUL, which would end the text", std::string("a\0b", 3), false, "a?b", 3},
};

TEST(ToBoxText, IsWhatTheTextBoxTakes) {
  ASSERT_EQ(GetACP(), 1252U);
  for (const TextCase& row : kTextCases) {
    SCOPED_TRACE(row.what);
    for (const bool counts_bytes : {false, true}) {
      const BoxText box = ToBoxText(row.text, row.after_cr, counts_bytes);
      EXPECT_EQ(box.ansi, row.ansi);
      EXPECT_EQ(box.positions, row.positions) << "one byte a character, however it is counted";
    }
  }
}

}  // namespace
}  // namespace zent
