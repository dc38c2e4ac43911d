#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>

#include "contracts/PeBuilder.h"
#include "platform/prefix/version/VersionBlock.h"

namespace zent::testing {
namespace {

constexpr const char* kFileVersion = R"(\StringFileInfo\040904B0\FileVersion)";
constexpr const char* kTranslation = R"(\VarFileInfo\Translation)";

VersionNode Usual(VersionNode text) {
  return Root(
      {StringFileInfo({Table("040904B0", {std::move(text)})}), VarFileInfo("\x09\x04\xB0\x04")});
}

/// What a resource with this one text answers when asked for it.
std::optional<std::string> TextOf(VersionNode text, VersionForm form = VersionForm::Unicode) {
  text.key = "FileVersion";
  return VersionBlock(BuildVersion(Usual(std::move(text)), form)).QueryText(kFileVersion);
}

struct TextCase {
  const char* what;
  VersionNode text;
  std::optional<std::string> answer;
};

const TextCase kTextCases[] = {
    {"a text", {.text = "3.6.0"}, "3.6.0"},
    {"an empty text", {.text = ""}, ""},
    {"a text of no bytes at all", {.text = "", .ends_with_nul = false}, ""},
    {"a text without NUL", {.text = "3.6.0", .ends_with_nul = false}, "3.6.0"},
    {"only the counted characters", {.text = "3.6.0", .value_length = 3}, "3.6"},
    {"a length beyond the block is cut",
     {.text = "3.6", .ends_with_nul = false, .value_length = 9},
     "3.6"},
    {"the largest length is cut", {.text = "3.6", .value_length = 0xFFFF}, "3.6"},
    {"bytes are ANSI text", {.bytes = "3.6\xE4", .is_text = false}, "3.6ä"},
    {"a character of two units is no ANSI one", {.text = "3.\U0001F600"}, "3.?"},
    {"a length of the block that ends in the name", {.text = "3.6.0", .length = 20}, std::nullopt},
    {"a length of the block that ends before the value", {.text = "3.6.0", .length = 30}, ""},
    {"a length of the block that ends in the value", {.text = "3.6.0", .length = 38}, "3.6"},
    {"a length of the block that ends in a character", {.text = "3.6.0", .length = 39}, "3.6"},
    {"a block of a length shorter than its header", {.text = "3.6.0", .length = 5}, std::nullopt},
    {"a block of length 0", {.text = "3.6.0", .length = 0}, std::nullopt},
    {"a block longer than its table", {.text = "3.6.0", .length = 0xFFFF}, "3.6.0"},
};

TEST(VersionBlock, CutsATextByItsLengths) {
  for (const TextCase& row : kTextCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(TextOf(row.text), row.answer);
  }
}

const TextCase kAnsiCases[] = {
    {"a text", {.text = "3.6.0"}, "3.6.0"},
    {"letters of the code page", {.text = "Bürö €"}, "Bürö €"},
    {"the type word does not exist", {.bytes = "3.6", .is_text = false}, "3.6"},
    {"only the counted bytes", {.text = "3.6.0", .value_length = 3}, "3.6"},
    {"a length beyond the block is cut", {.text = "3.6", .value_length = 0xFFFF}, "3.6"},
    {"a block of a length shorter than its header", {.text = "3.6.0", .length = 3}, std::nullopt},
};

TEST(VersionBlock, ReadsTheOldForm) {
  for (const TextCase& row : kAnsiCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(TextOf(row.text, VersionForm::Ansi), row.answer);
  }
}

TEST(VersionBlock, TakesAnyTypeButZeroForText) {
  std::string bytes = BuildVersion(Usual(Text("FileVersion", "3.6")));
  const std::size_t key = bytes.find(std::string("F\0i\0l\0e\0V\0", 10));
  ASSERT_NE(key, std::string::npos);
  for (const std::uint16_t type : std::initializer_list<std::uint16_t>{2, 0x100, 0xFFFF}) {
    SCOPED_TRACE(type);
    EXPECT_EQ(VersionBlock(Patched(bytes, key - 2, U16(type))).QueryText(kFileVersion), "3.6");
  }
}

TEST(VersionBlock, GivesBytesAsTheyAre) {
  const VersionBlock block(BuildVersion(Usual(Text("FileVersion", "3.6"))));
  EXPECT_EQ(block.QueryBytes(kFileVersion), std::string("3\0.\0006\0\0\0", 8));
  EXPECT_EQ(block.QueryBytes(kTranslation), "\x09\x04\xB0\x04");
  EXPECT_EQ(block.QueryText(kTranslation), "\t\x04\xC2\xB0\x04");
}

struct PathCase {
  const char* what;
  const char* path;
  bool found;
};

constexpr PathCase kPathCases[] = {
    {"the whole", "\\", true},
    {"nothing", "", true},
    {"a block that holds blocks", R"(\StringFileInfo)", true},
    {"a backslash at the end", R"(\VarFileInfo\Translation\)", true},
    {"doubled backslashes", R"(\\VarFileInfo\\Translation)", true},
    {"other case", R"(\varfileinfo\TRANSLATION)", true},
    {"the name of the whole is no part of a path", R"(\VS_VERSION_INFO)", false},
    {"the start of a name", R"(\VarFile)", false},
    {"more than a name", R"(\VarFileInfo2)", false},
    {"slashes", "/VarFileInfo/Translation", false},
    {"a block of another parent", R"(\VarFileInfo\FileVersion)", false},
    {"below a value", R"(\VarFileInfo\Translation\x)", false},
};

TEST(VersionBlock, FindsABlockByItsPath) {
  const VersionBlock block(BuildVersion(Usual(Text("FileVersion", "3.6"))));
  for (const PathCase& row : kPathCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(block.QueryBytes(row.path).has_value(), row.found);
  }
}

TEST(VersionBlock, DoesNotLookBackForASecondBlockOfAName) {
  const VersionBlock block(BuildVersion(
      Root({StringFileInfo({Table("040904B0", {Text("CompanyName", "a")}),
                            Table("040904b0", {Text("FileVersion", "in the second table")})})})));
  EXPECT_EQ(block.QueryText(R"(\StringFileInfo\040904B0\CompanyName)"), "a");
  EXPECT_EQ(block.QueryText(kFileVersion), std::nullopt);
}

TEST(VersionBlock, PassesOverABlockWithoutTheEndOfItsName) {
  // Eight bytes: a header and one letter.
  const VersionNode nameless = {.raw = std::string("\x08\0\0\0\1\0x\0", 8)};
  const VersionBlock block(BuildVersion(Root({nameless, VarFileInfo("\x09\x04\xB0\x04")})));
  EXPECT_EQ(block.QueryBytes(R"(\x)"), "");
  EXPECT_EQ(block.QueryBytes(kTranslation), "\x09\x04\xB0\x04");
}

TEST(VersionBlock, AnswersNothingForWhatIsNoBlock) {
  const std::string inputs[] = {"",
                                "\x01",
                                std::string(3, '\0'),
                                std::string(6, '\0'),
                                std::string(100, '\0'),
                                std::string(5, '\xFF'),
                                "VS_VERSION_INFO"};
  for (const std::string& bytes : inputs) {
    SCOPED_TRACE(bytes.size());
    const VersionBlock block(bytes);
    EXPECT_EQ(block.QueryText(kFileVersion), std::nullopt);
    EXPECT_EQ(block.QueryBytes(kTranslation), std::nullopt);
  }
}

// 65,535 bytes of the shortest blocks there are.
TEST(VersionBlock, SearchesManyBlocksInOnePass) {
  std::string bytes = BuildVersion({.key = "VS_VERSION_INFO", .is_text = false, .length = 0xFFFF});
  bytes.resize((bytes.size() + 3) / 4 * 4, '\0');
  while (bytes.size() < 0xFFFF) bytes += std::string("\x08\0\0\0\1\0\0\0", 8);
  const VersionBlock block(bytes);
  for (int query = 0; query < 100; ++query) {
    EXPECT_EQ(block.QueryText(kFileVersion), std::nullopt);
  }
}

}  // namespace
}  // namespace zent::testing
