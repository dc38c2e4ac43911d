#include <gtest/gtest.h>

#include <string>

#include "platform/prefix/registry/RegistryEscapes.h"

namespace zent {
namespace {

using namespace std::string_literals;

struct EscapeCase {
  const char* what;
  std::string text;
  std::string escaped;
};

const EscapeCase kTextEscapes[] = {
    {"plain characters stand as they are", "a b/[]#;=@'~", "a b/[]#;=@'~"},
    {"an empty text", "", ""},
    {"quotes and backslashes", R"(say "hi" C:\dir\)", R"(say \"hi\" C:\\dir\\)"},
    {"line feed, return, tab", "a\nb\rc\td", R"(a\nb\rc\td)"},
    {"the other letters", "\a\b\v\f\x1b", R"(\a\b\v\f\e)"},
    {"octal for other controls", "\x01\x1f\x0e", R"(\1\37\16)"},
    {"NUL", "ab\0cd"s, R"(ab\0cd)"},
    {"NUL at the end", "ab\0"s, R"(ab\0)"},
    {"three octal digits before an octal digit",
     "\x01"
     "7\x02"
     "8\x1f"
     "0\0"
     "7"s,
     R"(\0017\28\0370\0007)"},
    {"a short octal number before 8 and 9",
     "\x01"
     "9",
     R"(\19)"},
    {"127 stays raw", "\x7f", "\x7f"},
    {"hexadecimal, as short as it goes", "\u00e4\u00f6\u20ac", R"(\xe4\xf6\x20ac)"},
    {"128 is hexadecimal", "\u0080x", R"(\x80x)"},
    {"four digits before a hexadecimal digit",
     "\u00ffa\u00e41\u00e4F\u0416"
     "1",
     R"(\x00ffa\x00e41\x00e4F\x04161)"},
    {"... not before other letters", "\u00e4g", R"(\xe4g)"},
    {"two surrogates outside the basic plane", "\U0001f600", R"(\xd83d\xde00)"},
    {"a lone surrogate", "\xed\xa0\x80x", R"(\xd800x)"},
};

TEST(RegistryEscapes, WritesTexts) {
  for (const EscapeCase& row : kTextEscapes) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(EscapeText(row.text), row.escaped);
    EXPECT_EQ(Unescape(row.escaped), row.text);
  }
}

const EscapeCase kKeyEscapes[] = {
    {"brackets", "with[open]", R"(with\[open\])"},
    {"a quote stands as it is", R"(with"quote)", R"(with"quote)"},
    {"slash, number sign, semicolon, blanks", " #a;b/c ", " #a;b/c "},
    {"a tab", "tab\tx", R"(tab\tx)"},
    {"a line feed cannot end the line", "a\n[b]", R"(a\n\[b\])"},
    {"other letters", "k\u00e4se", R"(k\xe4se)"},
};

TEST(RegistryEscapes, WritesKeyNames) {
  for (const EscapeCase& row : kKeyEscapes) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(EscapeKeyName(row.text), row.escaped);
    EXPECT_EQ(Unescape(row.escaped), row.text);
  }
}

const EscapeCase kReadOnly[] = {
    {"raw UTF-8", "\u00e4\u20ac", "\u00e4\u20ac"},
    {"raw UTF-8 between escapes", "\t\u00e4\t", "\\t\u00e4\\t"},
    {"a broken raw byte", "a\ufffd\t", "a\xe4\\t"},
    {"capital digits", "\u00e4", R"(\xE4)"},
    {"no more than four hexadecimal digits",
     "\u20ac"
     "0",
     R"(\x20ac0)"},
    {"no more than three octal digits",
     "\x01"
     "1",
     R"(\0011)"},
    {"an octal number above 127", "\u00ff", R"(\377)"},
    {"an unknown letter stands for itself", "qz", R"(\q\z)"},
    {"x without digits stands for itself", "xy", R"(\xy)"},
    {"x at the end", "x", R"(\x)"},
    {"a backslash at the end says nothing", "a", "a\\"},
    {"a backslash before a raw character", "\u00e4", "\\\u00e4"},
};

TEST(RegistryEscapes, ReadsMoreThanItWrites) {
  for (const EscapeCase& row : kReadOnly) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Unescape(row.escaped), row.text);
  }
}

TEST(RegistryEscapes, EveryUnitSurvives) {
  for (char32_t unit = 0; unit < 0x10000; ++unit) {
    std::string text;
    // A high surrogate would join a low one; between the letters each stays alone.
    text += 'x';
    if (unit < 0x80) {
      text += static_cast<char>(unit);
    } else if (unit < 0x800) {
      text += {static_cast<char>(0xC0U | (unit >> 6U)), static_cast<char>(0x80U | (unit & 0x3FU))};
    } else {
      text += {static_cast<char>(0xE0U | (unit >> 12U)),
               static_cast<char>(0x80U | ((unit >> 6U) & 0x3FU)),
               static_cast<char>(0x80U | (unit & 0x3FU))};
    }
    text += '7';
    ASSERT_EQ(Unescape(EscapeText(text)), text) << static_cast<unsigned>(unit);
    ASSERT_EQ(Unescape(EscapeKeyName(text)), text) << static_cast<unsigned>(unit);
    ASSERT_EQ(EscapeText(text).find('\n'), std::string::npos);
  }
}

TEST(RegistryEscapes, FindsWhatIsNotEscaped) {
  EXPECT_EQ(FindUnescaped(R"(a\"b"c)", '"', 0), 4U);
  EXPECT_EQ(FindUnescaped(R"(a\\"c)", '"', 0), 3U);
  EXPECT_EQ(FindUnescaped(R"(a\")", '"', 0), std::string_view::npos);
  EXPECT_EQ(FindUnescaped("a\\", '"', 0), std::string_view::npos);
  EXPECT_EQ(FindUnescaped("", '"', 0), std::string_view::npos);
}

TEST(RegistryEscapes, MakesTextsWellFormed) {
  EXPECT_EQ(WellFormedText("a\xff"
                           "b"),
            "a\ufffd"
            "b");
  EXPECT_EQ(WellFormedText("\xed\xa0\xbd\xed\xb8\x80"), "\U0001f600");
}

}  // namespace
}  // namespace zent
