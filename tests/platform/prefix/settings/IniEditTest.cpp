#include <gtest/gtest.h>

#include <string>

#include "platform/prefix/settings/IniEdit.h"

namespace zent {
namespace {

using std::string_view_literals::operator""sv;

struct SetCase {
  const char* what;
  std::string_view before;
  std::string_view section;
  std::string_view key;
  std::string_view value;
  std::string_view after;
};

constexpr SetCase kReplaceCases[] = {
    {"indent, spelling and blanks of the line stay", "[S]\n  Key = 1 ; x \nB=2\n", "s", "KEY", "9",
     "[S]\n  Key = 9\nB=2\n"},
    {"first of several keys", "[S]\nA=1\na=2\n", "S", "A", "9", "[S]\nA=9\na=2\n"},
    {"line end stays", "[S]\rA=1\rB=2\n", "S", "A", "9", "[S]\rA=9\rB=2\n"},
    {"no line end stays none", "[S]\r\nA=1", "S", "A", "9", "[S]\r\nA=9"},
    {"longer, shorter, empty", "[S]\nA=1\n", "S", "A", "", "[S]\nA=\n"},
    {"value for an empty one", "[S]\nA=\nB=2\n", "S", "A", "9", "[S]\nA=9\nB=2\n"},
    {"value for a blank one", "[S]\nA =  \nB=2\n", "S", "A", "9", "[S]\nA =  9\nB=2\n"},
    {"quotes go with the old value", "[S]\nA=\"1\"\n", "S", "A", "9", "[S]\nA=9\n"},
    {"what stands behind a NUL goes too", "[S]\nA=1\0x\nB=2\n"sv, "S", "A", "9", "[S]\nA=9\nB=2\n"},
    {"leading blanks of the value go", "[S]\nA=1\n", "S", "A", " \t9 ", "[S]\nA=9 \n"},
    {"line breaks go in as they are", "[S]\nA=1\nB=2\n", "S", "A", "x\r\ny",
     "[S]\nA=x\r\ny\nB=2\n"},
    {"line before the first section", "A=1\n[S]\nA=2\n", "", "A", "9", "A=9\n[S]\nA=2\n"},
    {"ANSI", "[\xC4]\n\xD6=\xFC\n", "\xC3\xA4", "\xC3\xB6", "\xE2\x82\xAC", "[\xC4]\n\xD6=\x80\n"},
    {"what the code page lacks", "[S]\nA=1\n", "S", "A", "\xD0\x96", "[S]\nA=?\n"},
    {"UTF-8", "\xEF\xBB\xBF[S]\nA=1\nB=\xFF\n", "S", "A", "\xC3\xA4",
     "\xEF\xBB\xBF[S]\nA=\xC3\xA4\nB=\xFF\n"},
};

constexpr SetCase kInsertCases[] = {
    {"empty file", "", "S", "A", "1", "[S]\r\nA=1\r\n"},
    {"behind the last key", "[S]\nA=1\n\n\n[T]\nB=2\n", "S", "N", "9",
     "[S]\nA=1\nN=9\n\n\n[T]\nB=2\n"},
    {"behind a comment", "[S]\nA=1\n; c\n\n[T]\n", "S", "N", "9", "[S]\nA=1\n; c\nN=9\n\n[T]\n"},
    {"behind a line that is nothing", "[S]\njunk\n \n", "S", "N", "9", "[S]\njunk\nN=9\n \n"},
    {"behind the header", "[S]\n\n[T]\n", "S", "N", "9", "[S]\nN=9\n\n[T]\n"},
    {"header without an end", "[S]", "S", "N", "9", "[S]\r\nN=9\r\n"},
    {"last line without an end takes the end before it", "[S]\nA=1", "S", "N", "9",
     "[S]\nA=1\nN=9\n"},
    {"the neighbour's end, LF", "[S]\r\nA=1\n[T]\r\n", "S", "N", "9", "[S]\r\nA=1\nN=9\n[T]\r\n"},
    {"the neighbour's end, CR LF", "[S]\nA=1\r\n[T]\n", "S", "N", "9", "[S]\nA=1\r\nN=9\r\n[T]\n"},
    {"the neighbour's end, CR", "[S]\rA=1\r[T]\r", "S", "N", "9", "[S]\rA=1\rN=9\r[T]\r"},
    {"control-Z stays behind the key", "[S]\r\nA=1\r\n\x1A", "S", "N", "9",
     "[S]\r\nA=1\r\nN=9\r\n\x1A"},
    {"first section of the name", "[S]\nA=1\n[s]\nB=2\n", "S", "B", "9",
     "[S]\nA=1\nB=9\n[s]\nB=2\n"},
    {"before the first section", "\n[S]\nA=1\n", "", "N", "9", "N=9\n\n[S]\nA=1\n"},
    {"before the first section, CR LF", "[S]\r\n", "", "N", "9", "N=9\r\n[S]\r\n"},
    {"new section at the end", "[S]\nA=1\n", "T", "N", "9", "[S]\nA=1\n[T]\nN=9\n"},
    {"new section behind blank lines", "[S]\nA=1\n\n\n", "T", "N", "9", "[S]\nA=1\n\n\n[T]\nN=9\n"},
    {"new section behind a line without an end", "[S]\nA=1", "T", "N", "9", "[S]\nA=1\n[T]\nN=9\n"},
    {"new section before control-Z", "[S]\r\nA=1\r\n\x1A", "T", "N", "9",
     "[S]\r\nA=1\r\n[T]\r\nN=9\r\n\x1A"},
    {"new section's name without blanks", "", " T ", "N", "9", "[T]\r\nN=9\r\n"},
    {"new key keeps its trailing blank", "[S]\r\n", "S", " N ", "9", "[S]\r\nN =9\r\n"},
    {"new key without a name", "[S]\r\n", "S", "", "9", "[S]\r\n=9\r\n"},
    {"a comment is not replaced", "[S]\n;N=1\n", "S", "N", "9", "[S]\n;N=1\nN=9\n"},
    {"UTF-16 keeps mark and order", "\xFE\xFF\0[\0S\0]\0\n"sv, "S", "A", "1",
     "\xFE\xFF\0[\0S\0]\0\n\0A\0=\0"
     "1\0\n"sv},
    {"UTF-8 mark alone", "\xEF\xBB\xBF", "S", "\xC3\xA4", "1", "\xEF\xBB\xBF[S]\r\n\xC3\xA4=1\r\n"},
};

void RunSetCase(const SetCase& row) {
  SCOPED_TRACE(row.what);
  IniText file{std::string(row.before)};
  EXPECT_TRUE(SetIniValue(file, row.section, row.key, row.value));
  EXPECT_EQ(file.bytes(), row.after);
}

TEST(SetIniValue, ReplacesTheValueAndNothingElse) {
  for (const SetCase& row : kReplaceCases) RunSetCase(row);
}

TEST(SetIniValue, PutsANewKeyBehindTheLastLineThatIsNotBlank) {
  for (const SetCase& row : kInsertCases) RunSetCase(row);
}

TEST(SetIniValue, TellsThatNothingChanged) {
  IniText file{"[S]\nA = 1\nB=\n"};
  EXPECT_FALSE(SetIniValue(file, "S", "A", "1"));
  EXPECT_FALSE(SetIniValue(file, "S", "A", "  1"));
  EXPECT_FALSE(SetIniValue(file, "S", "B", ""));
  EXPECT_EQ(file.bytes(), "[S]\nA = 1\nB=\n");
}

struct RemoveCase {
  const char* what;
  std::string_view before;
  std::string_view section;
  std::optional<std::string_view> key;
  std::string_view after;
};

constexpr RemoveCase kRemoveCases[] = {
    {"key with its line end", "[S]\r\n A = 1\r\n\r\nB=2\r\n", "s", "a", "[S]\r\n\r\nB=2\r\n"},
    {"first of several keys", "[S]\nA=1\nA=2\n", "S", "A", "[S]\nA=2\n"},
    {"key at the end without an end", "[S]\nA=1", "S", "A", "[S]\n"},
    {"key before the first section", "A=1\n[S]\n", "", "A", "[S]\n"},
    {"missing key", "[S]\nA=1\n", "S", "B", "[S]\nA=1\n"},
    {"key of a missing section", "[S]\nA=1\n", "T", "A", "[S]\nA=1\n"},
    {"key of a later section of the name", "[S]\n[S]\nA=1\n", "S", "A", "[S]\n[S]\nA=1\n"},
    {"section with all its lines", "; h\n[S]\n; c\nA=1\n\njunk\n[T]\nB=2\n", "S", std::nullopt,
     "; h\n[T]\nB=2\n"},
    {"last section", "[S]\nA=1\n[T]\nB=2", "T", std::nullopt, "[S]\nA=1\n"},
    {"first section of the name alone", "[S]\n[T]\n[S]\n", "s", std::nullopt, "[T]\n[S]\n"},
    {"lines before the first section", "A=1\n\n[S]\nB=2\n", "", std::nullopt, "[S]\nB=2\n"},
    {"no lines before the first section", "[S]\n", "", std::nullopt, "[S]\n"},
    {"missing section", "[S]\nA=1\n", "T", std::nullopt, "[S]\nA=1\n"},
    {"section of a UTF-16 file", "\xFF\xFE[\0S\0]\0\n\0[\0T\0]\0"sv, "S", std::nullopt,
     "\xFF\xFE[\0T\0]\0"sv},
    {"everything but the mark", "\xEF\xBB\xBF[S]\nA=1\n", "S", std::nullopt, "\xEF\xBB\xBF"},
};

TEST(RemoveIniKeyAndSection, LeaveTheOtherLines) {
  for (const RemoveCase& row : kRemoveCases) {
    SCOPED_TRACE(row.what);
    IniText file{std::string(row.before)};
    const bool changed =
        row.key ? RemoveIniKey(file, row.section, *row.key) : RemoveIniSection(file, row.section);
    EXPECT_EQ(changed, row.before != row.after);
    EXPECT_EQ(file.bytes(), row.after);
  }
}

}  // namespace
}  // namespace zent
