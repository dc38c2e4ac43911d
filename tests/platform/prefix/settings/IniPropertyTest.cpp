#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

#include "base/CaseFold.h"
#include "platform/prefix/settings/IniEdit.h"
#include "platform/prefix/settings/IniLines.h"
#include "platform/prefix/settings/IniRead.h"
#include "platform/prefix/settings/IniText.h"

// Random files of a fixed seed. Names are few, so that keys and sections meet often.
namespace zent {
namespace {

constexpr int kRounds = 4000;
constexpr std::size_t kNoLimit = 1U << 20U;

class Dice {
 public:
  std::size_t Below(std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
  }

  template <std::size_t N>
  std::string OneOf(const std::array<std::string_view, N>& choices) {
    return std::string(choices[Below(N)]);
  }

  /// Text of the code page without line breaks, NUL and quotes, in UTF-8, without blanks at its
  /// ends.
  std::string Value() {
    static constexpr std::array<std::string_view, 9> kPieces = {
        "x", "7", " ", "=", ";", "[T]", "\xC3\xA4", "\xE2\x82\xAC", "\xC2\x81"};
    std::string value;
    for (std::size_t left = Below(6); left > 0; --left) value += OneOf(kPieces);
    return std::string(TrimIniBlanks(value));
  }

  std::string Section() {
    return OneOf(std::array<std::string_view, 4>{"S", "t", "\xC3\x84 b", "long name"});
  }
  std::string Key() {
    return OneOf(std::array<std::string_view, 4>{"a", "B", "\xC3\xB6", "two words"});
  }

  /// One line of any kind without its end, in UTF-8.
  std::string Line() {
    static constexpr std::array<std::string_view, 4> kBlanks = {"", " ", "\t", "  "};
    static constexpr std::array<std::string_view, 6> kOdd = {"; a=1", "junk", "[open",
                                                             "",      " ",    "[]"};
    switch (Below(6)) {
      case 0:
        return OneOf(kBlanks) + "[" + OneOf(kBlanks) + Section() + "]" + OneOf(kBlanks);
      case 1:
        return OneOf(kOdd);
      default:
        return OneOf(kBlanks) + Key() + OneOf(kBlanks) + "=" + OneOf(kBlanks) + Value() +
               OneOf(kBlanks);
    }
  }

  std::string File() {
    static constexpr std::array<std::string_view, 4> kEnds = {"\r\n", "\r\n", "\n", "\r"};
    static constexpr std::array<std::string_view, 4> kMarks = {"", "\xEF\xBB\xBF", "\xFF\xFE",
                                                               "\xFE\xFF"};
    IniText file{OneOf(kMarks)};
    std::string text;
    for (std::size_t left = Below(14); left > 0; --left) text += Line() + OneOf(kEnds);
    if (Below(3) == 0) text += Line();
    file.Replace(0, 0, file.Encode(text));
    return file.bytes();
  }

 private:
  std::mt19937 random_{20060102};
};

std::vector<std::string> LinesOf(const IniText& file) {
  std::vector<std::string> lines;
  IniLines cut(file.text());
  while (const std::optional<IniLine> line = cut.Next()) {
    lines.push_back(std::string(line->content) + std::string(line->end));
  }
  return lines;
}

/// How many lines both begin and both end with; together they never exceed the shorter file.
std::size_t CommonLines(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  std::size_t front = 0;
  const std::size_t shorter = std::min(a.size(), b.size());
  while (front < shorter && a[front] == b[front]) ++front;
  std::size_t back = 0;
  while (back < shorter - front && a[a.size() - 1 - back] == b[b.size() - 1 - back]) ++back;
  return front + back;
}

/// Every value of the file, by the way of the readers.
std::vector<std::string> AllValues(const IniText& file, const std::string& without_section,
                                   const std::string& without_key) {
  std::vector<std::string> all;
  for (const char* const section : {"", "S", "t", "\xC3\x84 b", "long name"}) {
    for (const char* const key : {"a", "B", "\xC3\xB6", "two words"}) {
      if (SameName(section, without_section) && SameName(key, without_key)) continue;
      all.push_back(FindIniValue(file, section, key, kNoLimit).value_or("(none)"));
    }
  }
  return all;
}

TEST(IniProperty, AWriteIsReadAgainAndLeavesEveryOtherLineAndValue) {
  Dice dice;
  for (int round = 0; round < kRounds; ++round) {
    const std::string before_bytes = dice.File();
    const std::string section = dice.Section();
    const std::string key = dice.Key();
    const std::string value = dice.Value();
    SCOPED_TRACE(::testing::Message() << ::testing::PrintToString(before_bytes) << ": [" << section
                                      << "] " << key << "=" << value);

    const IniText before{before_bytes};
    IniText after{before_bytes};
    const bool changed = SetIniValue(after, section, key, value);

    ASSERT_EQ(FindIniValue(after, section, key, kNoLimit), value);
    ASSERT_EQ(changed, after.bytes() != before_bytes);
    ASSERT_EQ(AllValues(after, section, key), AllValues(before, section, key));

    // One line differs, or was given an end, or is new, with its header perhaps.
    const std::vector<std::string> old_lines = LinesOf(before);
    const std::vector<std::string> new_lines = LinesOf(after);
    ASSERT_GE(CommonLines(old_lines, new_lines) + 1, old_lines.size());
    ASSERT_LE(new_lines.size(), old_lines.size() + 2);
    ASSERT_EQ(IniText(after.bytes()).text(), after.text());
    ASSERT_FALSE(SetIniValue(after, section, key, value));
  }
}

TEST(IniProperty, ARemovalTakesOneLineAndNothingElse) {
  Dice dice;
  for (int round = 0; round < kRounds; ++round) {
    const std::string before_bytes = dice.File();
    const std::string section = dice.Section();
    const std::string key = dice.Key();
    SCOPED_TRACE(::testing::Message()
                 << ::testing::PrintToString(before_bytes) << ": [" << section << "] " << key);

    const IniText before{before_bytes};
    IniText after{before_bytes};
    const bool changed = RemoveIniKey(after, section, key);

    ASSERT_EQ(changed, FindIniValue(before, section, key, kNoLimit).has_value());
    ASSERT_EQ(AllValues(after, section, key), AllValues(before, section, key));
    ASSERT_LE(LinesOf(after).size() + (changed ? 1 : 0), LinesOf(before).size());
  }
}

TEST(IniProperty, AnyBytesAreReadAndWrittenWithoutHarm) {
  Dice dice;
  static constexpr std::string_view kBytes("\0\r\n[]=;S\"' \x1A\xFF\xFE\xEF\xBB\xBF\xC3\xD8", 19);
  for (int round = 0; round < kRounds; ++round) {
    std::string bytes;
    for (std::size_t left = dice.Below(40); left > 0; --left) bytes += kBytes[dice.Below(19)];
    SCOPED_TRACE(::testing::PrintToString(bytes));

    IniText file{bytes};
    SetIniValue(file, "S", "a", "7");
    ASSERT_EQ(FindIniValue(file, "S", "a", kNoLimit), "7");
    ASSERT_LE(ListIniSections(file, 3).size(), 9U);
    RemoveIniSection(file, "S");
  }
}

}  // namespace
}  // namespace zent
