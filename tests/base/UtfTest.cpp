#include <gtest/gtest.h>

#include "base/Utf.h"

namespace zent {
namespace {

TEST(Utf16, RoundTripKeepsEveryCharacter) {
  const std::string text = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";
  EXPECT_EQ(ToUtf16(text).size(), 5U);
  EXPECT_EQ(FromUtf16(ToUtf16(text)), text);
}

TEST(Utf16, ALoneSurrogateSurvives) {
  const std::u16string lone = {u'a', static_cast<char16_t>(0xD800), u'b'};
  EXPECT_EQ(ToUtf16(FromUtf16(lone)), lone);
}

TEST(Utf16, BytesOfBothOrdersAreRead) {
  EXPECT_EQ(FromUtf16Bytes(std::string_view("a\0\xE4\0", 4)), "a\xC3\xA4");
  EXPECT_EQ(FromUtf16Bytes(std::string_view("\0a\0\xE4", 4), true), "a\xC3\xA4");
  EXPECT_EQ(FromUtf16Bytes(std::string_view("a\0x", 3)), "a");
}

TEST(IsUtf8, RefusesWhatNoEncoderWrites) {
  EXPECT_TRUE(IsUtf8("\xF4\x8F\xBF\xBF"));
  EXPECT_FALSE(IsUtf8("\xC0\xAF"));          // overlong
  EXPECT_FALSE(IsUtf8("\xE0\x80\xAF"));      // overlong
  EXPECT_FALSE(IsUtf8("\xED\xA0\x80"));      // a surrogate
  EXPECT_FALSE(IsUtf8("\xF4\x90\x80\x80"));  // above the last character
  EXPECT_FALSE(IsUtf8("\xE2\x82"));          // cut
  EXPECT_FALSE(IsUtf8("\xFF"));
}

TEST(NextCodePoint, MovesOnBehindABrokenByte) {
  std::size_t at = 0;
  EXPECT_EQ(NextCodePoint("\xE4z", at), char32_t{0xFFFD});
  EXPECT_EQ(at, 1U);
}

}  // namespace
}  // namespace zent
