#include <gtest/gtest.h>

#include "ui/console/TerminalText.h"

namespace zent {
namespace {

struct TextCase {
  const char* what;
  std::string text;
  const char* shown;
};

const TextCase kTextCases[] = {
    {"plain text stays", "Copying a.txt", "Copying a.txt"},
    {"nothing stays nothing", "", ""},
    {"CR LF is one line end", "a\r\nb\r\n", "a\nb\n"},
    {"so are LF and CR alone", "a\nb\rc", "a\nb\nc"},
    {"two CR are two line ends", "a\r\r\nb", "a\n\nb"},
    {"a tab stays", "a\tb", "a\tb"},
    {"other characters stay", "\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80",
     "\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80"},
    {"an escape sequence is shown", "\x1B[2J\x1B]0;title\x07", "^[[2J^[]0;title^G"},
    {"a backspace is shown", "a\bb", "a^Hb"},
    {"NUL is shown", std::string("a\0b", 3), "a^@b"},
    {"DEL is shown", "\x7F", "^?"},
    {"a control of the upper range is replaced",
     "\xC2\x9B"
     "2J",
     "\xEF\xBF\xBD"
     "2J"},
    {"as a lone byte too",
     "\x9B"
     "2J",
     "\xEF\xBF\xBD"
     "2J"},
    {"the blank that does not break stays", "\xC2\xA0", "\xC2\xA0"},
    {"half a surrogate pair is replaced", "\xED\xA0\x80", "\xEF\xBF\xBD"},
    {"a cut sequence is replaced", "a\xE2\x82", "a\xEF\xBF\xBD\xEF\xBF\xBD"},
};

TEST(ForTerminal, ObeysNoControlOfAText) {
  for (const TextCase& row : kTextCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ForTerminal(row.text), row.shown);
  }
}

}  // namespace
}  // namespace zent
