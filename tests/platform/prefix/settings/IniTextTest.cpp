#include <gtest/gtest.h>

#include <string>

#include "platform/prefix/settings/IniText.h"

namespace zent {
namespace {

using std::string_view_literals::operator""sv;

struct EncodingCase {
  const char* what;
  std::string_view bytes;
  IniEncoding encoding;
  std::string_view text;
};

constexpr EncodingCase kEncodingCases[] = {
    {"empty file", "", IniEncoding::Ansi, ""},
    {"no mark", "\xE4=1", IniEncoding::Ansi, "\xE4=1"},
    {"half a mark is text", "\xEF\xBB", IniEncoding::Ansi, "\xEF\xBB"},
    {"UTF-8 mark", "\xEF\xBB\xBF\xC3\xA4=1", IniEncoding::Utf8, "\xC3\xA4=1"},
    {"UTF-8 mark alone", "\xEF\xBB\xBF", IniEncoding::Utf8, ""},
    {"little-endian mark", "\xFF\xFE\xE4\0=\0"sv, IniEncoding::Utf16Little, "\xC3\xA4="},
    {"big-endian mark", "\xFE\xFF\0\xE4\0="sv, IniEncoding::Utf16Big, "\xC3\xA4="},
    {"UTF-16 mark alone", "\xFF\xFE", IniEncoding::Utf16Little, ""},
    {"odd last byte is no text",
     "\xFF\xFE"
     "A\0B"sv,
     IniEncoding::Utf16Little, "A"},
    {"UTF-16 without a mark is ANSI", "A\0=\0"sv, IniEncoding::Ansi, "A\0=\0"sv},
};

TEST(IniText, KnowsTheEncodingByItsMark) {
  for (const EncodingCase& row : kEncodingCases) {
    SCOPED_TRACE(row.what);
    const IniText file{std::string(row.bytes)};
    EXPECT_EQ(static_cast<int>(file.encoding()), static_cast<int>(row.encoding));
    EXPECT_EQ(file.text(), row.text);
    EXPECT_EQ(file.bytes(), row.bytes);
  }
}

TEST(IniText, DecodesToUtf8AndCutsByCharacters) {
  const IniText ansi{"\x80\xE4x"};
  EXPECT_EQ(ansi.Decode(ansi.text()), "\xE2\x82\xAC\xC3\xA4x");
  EXPECT_EQ(ansi.Decode(ansi.text(), 2), "\xE2\x82\xAC\xC3\xA4");
  const IniText utf8{"\xEF\xBB\xBF\xE2\x82\xAC\xC3\xA4x"};
  EXPECT_EQ(utf8.Decode(utf8.text(), 2), "\xE2\x82\xAC\xC3\xA4");
}

TEST(IniText, ACharacterOutsideTheCodePageReadsAsAQuestionMark) {
  const IniText utf8{"\xEF\xBB\xBF\xD0\x96y"};
  EXPECT_EQ(utf8.Decode(utf8.text()), "?y");
  const IniText utf16{std::string("\xFF\xFE\x16\x04y\0"sv)};
  EXPECT_EQ(utf16.Decode(utf16.text()), "?y");
}

struct ReplaceCase {
  const char* what;
  std::string_view before;
  std::size_t at;
  std::size_t count;
  std::string_view utf8;
  std::string_view after;
};

constexpr ReplaceCase kReplaceCases[] = {
    {"ANSI", "A=\xE4;", 2, 1, "\xC3\xB6x", "A=\xF6x;"},
    {"UTF-8, mark kept",
     "\xEF\xBB\xBF"
     "A=1;",
     2, 1, "\xC3\xB6",
     "\xEF\xBB\xBF"
     "A=\xC3\xB6;"},
    {"UTF-8, broken neighbours kept", "\xEF\xBB\xBF\xC3=1\xFF", 2, 1, "2",
     "\xEF\xBB\xBF\xC3=2\xFF"},
    {"little-endian",
     "\xFF\xFE\xE4\0=\0"
     "1\0"sv,
     3, 1, "\xC3\xB6", "\xFF\xFE\xE4\0=\0\xF6\0"sv},
    {"big-endian",
     "\xFE\xFF\0\xE4\0=\0"
     "1"sv,
     3, 1, "\xE2\x82\xAC", "\xFE\xFF\0\xE4\0=\x20\xAC"sv},
    {"behind a surrogate pair",
     "\xFF\xFE\x3D\xD8\x00\xDE"
     "1\0"sv,
     4, 1, "2",
     "\xFF\xFE\x3D\xD8\x00\xDE"
     "2\0"sv},
    {"behind a lone surrogate",
     "\xFF\xFE\x3D\xD8"
     "1\0"sv,
     3, 1, "2",
     "\xFF\xFE\x3D\xD8"
     "2\0"sv},
    {"before an odd last byte",
     "\xFF\xFE"
     "1\0X"sv,
     1, 0, "2",
     "\xFF\xFE"
     "1\0"
     "2\0X"sv},
};

TEST(IniText, ReplacesOnePlaceAndKeepsTheOtherBytes) {
  for (const ReplaceCase& row : kReplaceCases) {
    SCOPED_TRACE(row.what);
    IniText file{std::string(row.before)};
    file.Replace(row.at, row.count, file.Encode(row.utf8));
    EXPECT_EQ(file.bytes(), row.after);
    EXPECT_EQ(file.text(), IniText(file.bytes()).text());
  }
}

}  // namespace
}  // namespace zent
