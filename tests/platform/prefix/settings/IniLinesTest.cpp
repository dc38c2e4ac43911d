#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/prefix/settings/IniLines.h"

namespace zent {
namespace {

using std::string_view_literals::operator""sv;

struct KindCase {
  const char* what;
  std::string_view content;
  IniLineKind kind;
  std::string_view name;
  std::string_view value;
};

constexpr KindCase kKindCases[] = {
    {"nothing", "", IniLineKind::Blank, "", ""},
    {"blanks, tabs and control-Z", " \t\x1A ", IniLineKind::Blank, "", ""},
    {"nothing before a NUL", "\0A=1"sv, IniLineKind::Blank, "", ""},
    {"comment", ";A=1", IniLineKind::Comment, "", ""},
    {"indented comment", "  ; A=1", IniLineKind::Comment, "", ""},
    {"commented header", ";[S]", IniLineKind::Comment, "", ""},
    {"header", "[S]", IniLineKind::Header, "S", ""},
    {"header with blanks all round", "  [ S p ]  ", IniLineKind::Header, "S p", ""},
    {"header with text behind", "[S] ; about", IniLineKind::Header, "S", ""},
    {"last bracket ends the name", "[a]b]", IniLineKind::Header, "a]b", ""},
    {"opening bracket inside the name", "[a[b]", IniLineKind::Header, "a[b", ""},
    {"header with an equals sign behind", "[S]=1", IniLineKind::Header, "S", ""},
    {"header without a name", "[]", IniLineKind::Header, "", ""},
    {"header with a blank name", "[ \t]", IniLineKind::Header, "", ""},
    {"header without its closing bracket", "[S", IniLineKind::Other, "", ""},
    {"bracket behind a NUL closes nothing", "[S\0]"sv, IniLineKind::Other, "", ""},
    {"open bracket with an equals sign", "[S=1", IniLineKind::Key, "[S", "1"},
    {"key", "A=1", IniLineKind::Key, "A", "1"},
    {"blanks all round", " \tA b\t = \t1 2 \t", IniLineKind::Key, "A b", "1 2"},
    {"first equals sign counts", "A=b=c", IniLineKind::Key, "A", "b=c"},
    {"two equals signs", "A==x", IniLineKind::Key, "A", "=x"},
    {"no value", "A=", IniLineKind::Key, "A", ""},
    {"blank value", "A=  \t", IniLineKind::Key, "A", ""},
    {"no name", "=x", IniLineKind::Key, "", "x"},
    {"neither name nor value", "=", IniLineKind::Key, "", ""},
    {"quotes stay here", "A=\" x \"", IniLineKind::Key, "A", "\" x \""},
    {"semicolon inside a value", "A=1 ; 2", IniLineKind::Key, "A", "1 ; 2"},
    {"hash begins no comment", "#A=1", IniLineKind::Key, "#A", "1"},
    {"control-Z behind the value", "A=1\x1A", IniLineKind::Key, "A", "1"},
    {"value ends at a NUL", "A= a \0b"sv, IniLineKind::Key, "A", "a"},
    {"equals sign behind a NUL", "A\0=1"sv, IniLineKind::Other, "", ""},
    {"other controls are text", "\vA=\f1\v", IniLineKind::Key, "\vA", "\f1\v"},
    {"no-break space is text", "\xA0=\xA0", IniLineKind::Key, "\xA0", "\xA0"},
    {"no equals sign", "two words", IniLineKind::Other, "", ""},
};

TEST(ClassifyIniLine, TellsHeadersKeysAndComments) {
  for (const KindCase& row : kKindCases) {
    SCOPED_TRACE(row.what);
    const IniLine line = ClassifyIniLine(row.content);
    EXPECT_EQ(static_cast<int>(line.kind), static_cast<int>(row.kind));
    EXPECT_EQ(line.content, row.content);
    EXPECT_EQ(line.name, row.name);
    EXPECT_EQ(line.value, row.value);
  }
}

TEST(ClassifyIniLine, AnEmptyValueLiesWhereTheValueBelongs) {
  constexpr std::string_view kBlankValue = "A =  ";
  const IniLine line = ClassifyIniLine(kBlankValue);
  EXPECT_EQ(line.value.data() - kBlankValue.data(), 5);

  constexpr std::string_view kCutValue = "A=\0junk"sv;
  EXPECT_EQ(ClassifyIniLine(kCutValue).value.data() - kCutValue.data(), 2);
}

struct CutCase {
  const char* what;
  std::string_view text;
  std::vector<std::string_view> contents_and_ends;
};

std::vector<CutCase> CutCases() {
  return {
      {"empty text", "", {}},
      {"CR LF", "a\r\nb\r\n", {"a", "\r\n", "b", "\r\n"}},
      {"LF", "a\nb\n", {"a", "\n", "b", "\n"}},
      {"CR", "a\rb\r", {"a", "\r", "b", "\r"}},
      {"no end at the end", "a\r\nb", {"a", "\r\n", "b", ""}},
      {"one line without end", "a", {"a", ""}},
      {"CR at the very end", "a\r", {"a", "\r"}},
      {"only ends", "\n\r\r\n", {"", "\n", "", "\r", "", "\r\n"}},
      {"CR before CR LF is a line", "b\r\r\nc", {"b", "\r", "", "\r\n", "c", ""}},
      {"LF before CR is a line", "c\n\rd", {"c", "\n", "", "\r", "d", ""}},
      {"NUL and control-Z end no line", "a\0b\x1A\nc"sv, {"a\0b\x1A"sv, "\n", "c", ""}},
      {"all three kinds", "a\rb\nc\r\nd", {"a", "\r", "b", "\n", "c", "\r\n", "d", ""}},
  };
}

TEST(IniLines, EndAtCrLfAtLfAndAtCr) {
  for (const CutCase& row : CutCases()) {
    SCOPED_TRACE(row.what);
    IniLines lines(row.text);
    std::vector<std::string_view> cut;
    while (const std::optional<IniLine> line = lines.Next()) {
      cut.push_back(line->content);
      cut.push_back(line->end);
    }
    EXPECT_EQ(cut, row.contents_and_ends);
    EXPECT_FALSE(lines.Next());
  }
}

TEST(IniLines, LieInTheTextOneBehindTheOther) {
  const std::string text = "; c\r\n\n[S]\rA = 1 \r\nend";
  IniLines lines(text);
  const char* expected = text.data();
  while (const std::optional<IniLine> line = lines.Next()) {
    EXPECT_EQ(line->content.data(), expected);
    EXPECT_EQ(line->end.data(), expected + line->content.size());
    expected = line->end.data() + line->end.size();
  }
  EXPECT_EQ(expected, text.data() + text.size());
}

TEST(TrimIniBlanks, AnEmptyResultLiesAtTheEnd) {
  constexpr std::string_view kBlanks = "  \t";
  EXPECT_EQ(TrimIniBlanks(kBlanks).data(), kBlanks.data() + kBlanks.size());
  EXPECT_TRUE(TrimIniBlanks("").empty());
}

}  // namespace
}  // namespace zent
