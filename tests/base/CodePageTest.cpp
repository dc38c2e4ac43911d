#include <gtest/gtest.h>

#include "base/CodePage.h"
#include "base/Utf.h"

namespace zent {
namespace {

TEST(CodePage, EveryByteSurvivesTheWayThere_AndBack) {
  for (int byte = 0; byte < 256; ++byte) {
    SCOPED_TRACE(byte);
    const std::string ansi(1, static_cast<char>(byte));
    const std::string utf8 = FromAnsi(ansi);
    EXPECT_TRUE(IsUtf8(utf8));
    EXPECT_EQ(ToAnsi(utf8), ansi);
  }
}

TEST(CodePage, KnowsTheCharactersBetween80And9F) {
  EXPECT_EQ(FromAnsi("\x80"), "\xE2\x82\xAC");  // the euro sign
  EXPECT_EQ(FromAnsi("\x99"), "\xE2\x84\xA2");  // the trade mark sign
}

TEST(CodePage, AnUndefinedByteIsTheControlOfItsNumber) {
  EXPECT_EQ(FromAnsi("\x81"), "\xC2\x81");
  EXPECT_EQ(ToAnsi("\xC2\x9D"), "\x9D");
}

TEST(CodePage, ACharacterOutsideBecomesAQuestionMark) { EXPECT_EQ(ToAnsi("\xD0\x96y"), "?y"); }

}  // namespace
}  // namespace zent
