#include <gtest/gtest.h>

#include "HexBytes.h"
#include "base/Utf.h"
#include "jet/format/SortOrder.h"
#include "jet/format/TextCodec.h"
#include "jet/format/TextKey.h"

namespace zent::jet {
namespace {

std::string Key4(std::string_view text, bool ascending = true) {
  std::string key;
  AppendTextKey4(text, ascending, key);
  return ToHex(key);
}

std::string Key3(std::string_view text, bool ascending = true) {
  std::string key;
  AppendTextKey3(text, ascending, key);
  return ToHex(key);
}

struct KeyCase {
  const char* what;
  std::string text;
  const char* ascending;
  const char* descending;
};

const KeyCase kJet4Keys[] = {
    {"no text", "", "01 00", "FE FF 00"},
    {"letters", "abc", "4A 4C 4D 01 00", "B5 B3 B2 FE FF 00"},
    {"case does not count", "ABC", "4A 4C 4D 01 00", "B5 B3 B2 FE FF 00"},
    {"a blank within", "a b", "4A 07 4C 01 00", "B5 F8 B3 FE FF 00"},
    {"blanks at the end are none", "a b   ", "4A 07 4C 01 00", "B5 F8 B3 FE FF 00"},
    {"an apostrophe comes last of all", "it's", "59 6D 6B 01 01 01 01 80 0F 06 80 00",
     "A6 92 94 FE FE FE FE 7F F0 F9 7F FF 00"},
    {"so does a hyphen", "co-op", "4D 64 64 66 01 01 01 01 80 0F 06 82 00",
     "B2 9B 9B 99 FE FE FE FE 7F F0 F9 7D FF 00"},
    {"an accent after the codes", "n\xC3\xA9", "62 51 01 02 0E 00", "9D AE FE FD F1 FF 00"},
    {"two accents",
     "\xC3\x91"
     "and\xC3\xBA",
     "62 4A 62 4F 6F 01 19 02 02 02 0E 00", "9D B5 9D B0 90 FE E6 FD FD FD F1 FF 00"},
    {"sharp s is two letters", "\xC3\x9F", "6B 6B 01 00", "94 94 FE FF 00"},
    {"ideographs", "\xE6\x97\xA5\xE6\x9C\xAC", "B7 56 B8 A9 01 00", "48 A9 47 56 FE FF 00"},
    {"kana have marks behind everything else", "\xE3\x82\xA2\xE3\x81\x84",
     "7F 02 7F 03 01 01 01 FF 02 80 FF 80 00", "80 FD 80 FC FE FE FE 00 FD 7F 00 7F FF 00"},
    {"an accent of its own is added to its letter", "a\xCC\x81", "4A 01 0E 00", "B5 FE F1 FF 00"},
};

TEST(TextKey4, HasCodesThenAccentsThenHiddenCharacters) {
  for (const KeyCase& row : kJet4Keys) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Key4(row.text), row.ascending);
    EXPECT_EQ(Key4(row.text, false), row.descending);
  }
}

struct HiddenCase {
  const char* what;
  std::string text;
  const char* key;
};

// What the rules give where several of them meet.
const HiddenCase kMixedKeys[] = {
    {"a hidden character before everything", "-a", "4A 01 01 01 01 80 07 06 82 00"},
    {"two of them", "-a-", "4A 01 01 01 01 80 07 06 82 80 0B 06 82 00"},
    {"behind an accent the place counts bytes of weight", "\xC3\xA9-",
     "51 01 0E 01 01 01 80 0B 06 82 00"},
    {"between two accents", "\xC3\xA9-\xC3\xA9", "51 51 01 0E 0E 01 01 01 80 0B 06 82 00"},
    {"an accent without a letter before it", "\xCC\x81", "01 0C 00"},
    {"the accent of a later letter fills up", "abc\xCC\x81", "4A 4C 4D 01 02 02 0E 00"},
    {"marks and hidden characters together", "\xE3\x81\x82-",
     "7F 02 01 01 01 FF 02 80 FF 80 FF 01 80 0B 06 82 00"},
    {"small kana have marks of their own", "\xE3\x81\x81\xE3\x81\x82",
     "7F 02 7F 02 01 01 01 A0 FF 02 80 FF 80 00"},
    {"an ignored character leaves nothing", std::string("a\0b", 3), "4A 4C 01 00"},
    {"digits before letters", "9a", "48 4A 01 00"},
    {"ae is two letters", "\xC3\xA6", "4A 51 01 00"},
};

TEST(TextKey4, CombinesItsStreams) {
  for (const HiddenCase& row : kMixedKeys) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Key4(row.text), row.key);
  }
}

TEST(TextKey4, PairsOfSurrogatesHaveComputedCodes) {
  // U+1F600 is D83D DE00; the second half lies 512 behind the first of its kind.
  EXPECT_EQ(Key4("\xF0\x9F\x98\x80"), "B0 3F B6 FC 01 3F 3F 00");
}

TEST(TextKey4, LowHalvesMoveOnWithEachGapOfTheirRange) {
  struct Row {
    char16_t unit;
    const char* code;
  };
  const Row rows[] = {{0xDC00, "B4 F8"}, {0xDC07, "B4 FF"}, {0xDC08, "B5 02"}, {0xDD05, "B5 FF"},
                      {0xDD06, "B6 02"}, {0xDE03, "B6 FF"}, {0xDE04, "B7 02"}, {0xDF01, "B7 FF"},
                      {0xDF02, "B8 02"}, {0xDFFF, "B8 FF"}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.code);
    EXPECT_EQ(Key4(FromUtf16(std::u16string(1, row.unit))), std::string(row.code) + " 01 3F 00");
  }
}

TEST(TextKey4, What255UnitsDoNotHoldDoesNotCount) {
  const std::string full(255, 'a');
  EXPECT_EQ(Key4(full + "b"), Key4(full));
  EXPECT_EQ(Key4(std::string(254, 'a') + " b"), Key4(std::string(254, 'a')));
  EXPECT_NE(Key4(std::string(254, 'a') + "b"), Key4(full));
}

TEST(TextKey4, IsAppendedToWhatIsThere) {
  std::string key = Hex("7F");
  AppendTextKey4("a", false, key);
  EXPECT_EQ(ToHex(key), "7F B5 FE FF 00");
}

/// The key of a field of these bytes.
std::string StoredKey4(ByteView stored, bool ascending) {
  std::string key;
  AppendStoredTextKey4(stored, ascending, key);
  return ToHex(key);
}

TEST(StoredTextKey4, IsTheKeyOfTheTextThatIsStored) {
  std::vector<std::string> texts = {"A5 ", "\x7F", "\xC3\xA9t\xC3\xA9"};
  for (const KeyCase& row : kJet4Keys) texts.push_back(row.text);
  for (const HiddenCase& row : kMixedKeys) texts.push_back(row.text);
  for (const std::size_t length : {253U, 254U, 255U, 256U, 300U}) {
    texts.push_back(std::string(length, 'a') + " b");
    texts.push_back(std::string(length, ' ') + "b");
    texts.push_back(std::string(length, '0') + "\xE6\x97\xA5");
    texts.push_back(std::string(length - 1, 'a') + "-");
  }
  for (const std::string& text : texts) {
    for (const bool compress : {false, true}) {
      SCOPED_TRACE(text + (compress ? " compressed" : " plain"));
      std::string stored;
      EncodeText(text, compress, stored);
      EXPECT_EQ(StoredKey4(AsBytes(stored), true), Key4(text));
      EXPECT_EQ(StoredKey4(AsBytes(stored), false), Key4(text, false));
    }
  }
}

struct StoredCase {
  const char* what;
  const char* bytes;
};

// What others may have stored, and we would not.
constexpr StoredCase kStored[] = {
    {"nothing", ""},
    {"compressed, empty", "FF FE"},
    {"two characters compressed", "FF FE 61 62"},
    {"compressed blanks at the end", "FF FE 61 20 20"},
    {"words in the middle", "FF FE 61 00 E5 65 00 62"},
    {"plain letters as words", "FF FE 61 00 62 00 63 00 00 64"},
    {"words without any", "FF FE 61 00 00 62"},
    {"an odd word", "FF FE 61 00 E5 65 2C"},
    {"plain with an odd last byte", "68 00 69"},
    {"half a mark", "FF"},
    {"a lone surrogate", "3D D8 61 00"},
    {"a character 0", "61 00 00 00 62 00"},
};

TEST(StoredTextKey4, IsTheKeyOfWhatTheFieldReadsAs) {
  for (const StoredCase& row : kStored) {
    SCOPED_TRACE(row.what);
    const std::vector<std::uint8_t> stored = HexVector(row.bytes);
    const std::string text = DecodeText(JetVersion::Jet4, stored);
    EXPECT_EQ(StoredKey4(stored, true), Key4(text));
    EXPECT_EQ(StoredKey4(stored, false), Key4(text, false));
  }
}

// Texts in their order: each before the next, and after it where the order is descending.
TEST(TextKey4, OrdersAsPeopleDo) {
  const std::string texts[] = {"",   "_",   "1",     "10",    "2",    "a",           "a b",
                               "ab", "abc", "co-op", "coop2", "cote", "cot\xC3\xA9", "z"};
  for (std::size_t i = 0; i + 1 < std::size(texts); ++i) {
    SCOPED_TRACE(texts[i] + " before " + texts[i + 1]);
    std::string low;
    std::string high;
    AppendTextKey4(texts[i], true, low);
    AppendTextKey4(texts[i + 1], true, high);
    EXPECT_LT(low, high);
    low.clear();
    high.clear();
    AppendTextKey4(texts[i], false, low);
    AppendTextKey4(texts[i + 1], false, high);
    EXPECT_GT(low, high);
  }
}

const KeyCase kJet3Keys[] = {
    {"no text", "", "00", "FF"},
    {"an accent is a nibble at its place", "n\xC3\xA9", "70 66 02 40", "8F 99 FD BF"},
    {"two accents",
     "\xC3\x91"
     "and\xC3\xBA",
     "70 60 70 64 78 07 22 40", "8F 9F 8F 9B 87 F8 DD BF"},
    {"sharp s is two letters", "\xC3\x9F", "76 76 00", "89 89 FF"},
    {"case does not count", "Bb", "61 61 00", "9E 9E FF"},
    {"blanks at the end are none", "b  ", "61 00", "9E FF"},
    {"a control character sorts first", std::string("\0", 1), "10 00", "EF FF"},
    {"what the code page lacks is nothing", "b\xE6\x97\xA5", "61 00", "9E FF"},
};

TEST(TextKey3, HasCodesThenTheNibblesOfAccents) {
  for (const KeyCase& row : kJet3Keys) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Key3(row.text), row.ascending);
    EXPECT_EQ(Key3(row.text, false), row.descending);
  }
}

TEST(TextKey3, CharactersBeyondLatin1GoByTheirByte) {
  EXPECT_EQ(Key3("\xC5\x92"), Key3("oe"));  // the ligature has byte 8C
  EXPECT_EQ(Key3("\xC2\x8C"), Key3("oe"));
}

TEST(SameKey, IsHowNamesAreUnique) {
  struct Row {
    const char* a;
    const char* b;
    bool same;
  };
  const Row rows[] = {{"Name", "NAME", true},
                      {"Name", "Name ", true},
                      {"Name", "Nam\xC3\xA9", false},
                      {"co-op", "coop", false},
                      {"stra\xC3\x9F"
                       "e",
                       "STRASSE", true}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.a);
    EXPECT_EQ(SameKey(row.a, row.b), row.same);
  }
}

TEST(SortOrder, CoversEveryUnitOnce) {
  std::size_t plain = 0;
  std::size_t surrogates = 0;
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    const SortEntry entry = SortEntry4(static_cast<char16_t>(unit));
    if (entry.sort_class == SortClass::Plain) ++plain;
    if (entry.sort_class == SortClass::Surrogate) ++surrogates;
    const bool coded = entry.sort_class == SortClass::Plain ||
                       entry.sort_class == SortClass::Accented ||
                       entry.sort_class == SortClass::Kana2 || entry.sort_class == SortClass::Kana3;
    ASSERT_EQ(entry.code_size > 0, coded) << unit;
    ASSERT_LE(entry.code_size, 4) << unit;
    ASSERT_NE(entry.sort_class, SortClass::Counted) << unit;
    ASSERT_NE(entry.sort_class, SortClass::Mapped) << unit;
  }
  EXPECT_EQ(surrogates, 0x800U);
  EXPECT_GT(plain, 20000U);  // ideographs are most of them
}

struct EntryCase {
  const char* what;
  char16_t unit;
  SortClass sort_class;
  std::uint32_t code;
  std::uint16_t weight;
};

constexpr EntryCase kEntries4[] = {
    {"the first of a run", u'0', SortClass::Plain, 0x36, 0},
    {"within a run in steps of two", u'5', SortClass::Plain, 0x40, 0},
    {"the last of a run", u'9', SortClass::Plain, 0x48, 0},
    {"an accented letter", 0xE9, SortClass::Accented, 0x51, 0x0E},
    {"weights in steps", 0x0963, SortClass::Accent, 0, 0x14},
    {"codes in steps of many", 0x0967, SortClass::Accented, 0x3904, 0x3A},
    {"nothing", 0x0975, SortClass::Ignored, 0, 0},
};

TEST(SortOrder, ComputesTheEntriesOfARun) {
  for (const EntryCase& row : kEntries4) {
    SCOPED_TRACE(row.what);
    const SortEntry entry = SortEntry4(row.unit);
    EXPECT_EQ(entry.sort_class, row.sort_class);
    EXPECT_EQ(entry.code, row.code);
    EXPECT_EQ(entry.weight, row.weight);
  }
}

}  // namespace
}  // namespace zent::jet
