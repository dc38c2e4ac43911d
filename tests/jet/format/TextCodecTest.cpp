#include <gtest/gtest.h>

#include "HexBytes.h"
#include "jet/format/TextCodec.h"

namespace zent::jet {
namespace {

struct DecodeCase {
  const char* what;
  JetVersion version;
  const char* bytes;
  std::string text;
};

const DecodeCase kDecoded[] = {
    {"nothing", JetVersion::Jet4, "", ""},
    {"plain", JetVersion::Jet4, "68 00 69 00", "hi"},
    {"plain beyond ASCII", JetVersion::Jet4, "68 00 E9 00 E5 65", "h\xC3\xA9\xE6\x97\xA5"},
    {"plain with an odd last byte", JetVersion::Jet4, "68 00 69", "h"},
    {"compressed", JetVersion::Jet4, "FF FE 66 6F 6F 30", "foo0"},
    {"compressed beyond ASCII", JetVersion::Jet4, "FF FE 66 E9", "f\xC3\xA9"},
    {"compressed, empty", JetVersion::Jet4, "FF FE", ""},
    {"words in the middle", JetVersion::Jet4, "FF FE 61 00 E5 65 00 62",
     "a\xE6\x97\xA5"
     "b"},
    {"words to the end", JetVersion::Jet4, "FF FE 61 00 E5 65 2C 67", "a\xE6\x97\xA5\xE6\x9C\xAC"},
    {"words at once", JetVersion::Jet4, "FF FE 00 E5 65", "\xE6\x97\xA5"},
    {"words without any", JetVersion::Jet4, "FF FE 61 00 00 62", "ab"},
    {"an odd word", JetVersion::Jet4, "FF FE 61 00 E5 65 2C", "a\xE6\x97\xA5"},
    {"a pair of surrogates", JetVersion::Jet4, "3D D8 00 DE", "\xF0\x9F\x98\x80"},
    {"a lone surrogate is kept", JetVersion::Jet4, "3D D8 61 00",
     "\xED\xA0\xBD"
     "a"},
    {"Access 97", JetVersion::Jet3, "68 E9 80", "h\xC3\xA9\xE2\x82\xAC"},
    {"Access 97, bytes that the code page lacks", JetVersion::Jet3, "81 8D 8F 90 9D",
     "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D"},
    {"Access 97 knows no compression", JetVersion::Jet3, "FF FE 61",
     "\xC3\xBF\xC3\xBE"
     "a"},
};

TEST(DecodeText, ReadsEveryForm) {
  for (const DecodeCase& row : kDecoded) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(DecodeText(row.version, HexVector(row.bytes)), row.text);
    std::string reused = "what was there";
    DecodeText(row.version, HexVector(row.bytes), reused);
    EXPECT_EQ(reused, row.text);
  }
}

struct EncodeCase {
  const char* what;
  std::string text;
  bool compress;
  const char* bytes;
};

const EncodeCase kEncoded[] = {
    {"nothing", "", true, ""},
    {"two characters stay plain", "ab", true, "61 00 62 00"},
    {"three are compressed", "abc", true, "FF FE 61 62 63"},
    {"not where the field may not", "abc", false, "61 00 62 00 63 00"},
    {"Latin-1 is compressed", "ab\xC3\xA9", true, "FF FE 61 62 E9"},
    {"anything else is not", "ab\xE6\x97\xA5", true, "61 00 62 00 E5 65"},
    {"a character 0 is not", std::string("ab\0", 3), true, "61 00 62 00 00 00"},
    {"a byte order mark at the start is left out",
     "\xEF\xBB\xBF\xEF\xBB\xBF"
     "a",
     true, "61 00"},
    {"but not within", "a\xEF\xBB\xBF", true, "61 00 FF FE"},
    {"a pair of surrogates", "\xF0\x9F\x98\x80", true, "3D D8 00 DE"},
};

TEST(EncodeText, CompressesWhereItMay) {
  for (const EncodeCase& row : kEncoded) {
    SCOPED_TRACE(row.what);
    std::string bytes = "what was there";
    EncodeText(row.text, row.compress, bytes);
    EXPECT_EQ(ToHex(bytes), ToHex(Hex(row.bytes)));
  }
}

TEST(EncodeText, LongTextsAreNeverCompressed) {
  std::string bytes;
  EncodeText(std::string(1024, 'x'), true, bytes);
  EXPECT_EQ(bytes.size(), 1026U);
  EncodeText(std::string(1025, 'x'), true, bytes);
  EXPECT_EQ(bytes.size(), 2050U);
}

TEST(Text, IsReadAsItWasWritten) {
  const std::string texts[] = {"a",
                               "abc",
                               "\xC3\xA9\xC3\xA8\xC3\xAA",
                               "\xE6\x97\xA5 x",
                               "\xED\xA0\xBD lone",
                               std::string(300, 'z')};
  for (const std::string& text : texts) {
    for (const bool compress : {false, true}) {
      std::string bytes;
      EncodeText(text, compress, bytes);
      EXPECT_EQ(DecodeText(JetVersion::Jet4, AsBytes(bytes)), text);
    }
  }
}

TEST(Name, IsPlainInBothVersions) {
  EXPECT_EQ(ToHex(EncodeName(JetVersion::Jet4, "abc")), "61 00 62 00 63 00");
  EXPECT_EQ(ToHex(EncodeName(JetVersion::Jet3, "ab\xC3\xA9")), "61 62 E9");
  EXPECT_EQ(DecodeName(JetVersion::Jet4, HexVector("FF FE 61 00")),
            "\xEF\xBB\xBF"
            "a");
  EXPECT_EQ(DecodeName(JetVersion::Jet3, HexVector("61 E9")), "a\xC3\xA9");
}

TEST(CountUnits, CountsAsTheFileDoes) {
  EXPECT_EQ(CountUnits(""), 0U);
  EXPECT_EQ(CountUnits("a\xC3\xA9\xE6\x97\xA5"), 3U);
  EXPECT_EQ(CountUnits("\xF0\x9F\x98\x80"), 2U);
  EXPECT_EQ(CountUnits("\xED\xA0\xBD"), 1U);
}

}  // namespace
}  // namespace zent::jet
