#include <gtest/gtest.h>

#include <string>

#include "platform/prefix/registry/RegistryData.h"
#include "platform/prefix/registry/RegistryLines.h"
#include "platform/prefix/registry/RegistryMachines.h"

namespace zent {
namespace {

using namespace std::string_literals;

struct DataCase {
  const char* what;
  std::string data;
  std::uint32_t type;
  std::string bytes;
};

/// These read and are written alike.
const DataCase kBothWays[] = {
    {"a text", R"("plain")", kRegSz, "plain\0"s},
    {"an empty text", R"("")", kRegSz, "\0"s},
    {"a text of two NULs", R"("ab\0")", kRegSz, "ab\0\0"s},
    {"an inner NUL", R"("ab\0cd")", kRegSz, "ab\0cd\0"s},
    {"quotes and backslashes", R"("say \"hi\" C:\\dir\\")", kRegSz, "say \"hi\" C:\\dir\\\0"s},
    {"what looks like more", R"("[a]=b;c@#")", kRegSz, "[a]=b;c@#\0"s},
    {"an expandable text", R"(str(2):"%SystemRoot%\\x")", kRegExpandSz, "%SystemRoot%\\x\0"s},
    {"a list", R"(str(7):"one\0two\0")", kRegMultiSz, "one\0two\0\0"s},
    {"an empty list", R"(str(7):"")", kRegMultiSz, "\0"s},
    {"a text of no bytes", "hex(1):", kRegSz, ""},
    {"a text without NUL", "hex(1):61,00", kRegSz, "a"},
    {"an expandable text without NUL", "hex(2):e4,00", kRegExpandSz, "\u00e4"},
    {"a list without NUL", "hex(7):61,00", kRegMultiSz, "a"},
    {"a number", "dword:12345678", kRegDword, "\x78\x56\x34\x12"},
    {"zero", "dword:00000000", kRegDword, "\0\0\0\0"s},
    {"a number of two bytes", "hex(4):01,02", kRegDword, "\x01\x02"},
    {"bytes", "hex:00,01,ff,80", kRegBinary, "\0\x01\xff\x80"s},
    {"no bytes", "hex:", kRegBinary, ""},
    {"no type", "hex(0):01,02,03", kRegNone, "\x01\x02\x03"},
    {"no type and no bytes", "hex(0):", kRegNone, ""},
    {"a long number", "hex(b):08,07,06,05,04,03,02,01", 11, "\x08\x07\x06\x05\x04\x03\x02\x01"},
    {"a type of one's own", "hex(4d):61,62", 77, "ab"},
    {"the highest types", "hex(80000001):61,62", 0x80000001, "ab"},
};

TEST(RegistryData, ReadsAndWritesEveryType) {
  for (const DataCase& row : kBothWays) {
    SCOPED_TRACE(row.what);
    const std::optional<RegistryValue> value = ParseValueData(row.data);
    ASSERT_TRUE(value);
    EXPECT_EQ(value->type, row.type);
    EXPECT_EQ(value->data, row.bytes);
    EXPECT_EQ(FormatValueLines("v", *value, "\n"), "\"v\"=" + row.data + "\n");
  }
}

const DataCase kReadOnly[] = {
    {"blanks at the end", "\"x\" \t", kRegSz, "x\0"s},
    {"few digits", "dword:2a", kRegDword, "\x2a\0\0\0"s},
    {"capital digits", "hex:AB,Cd", kRegBinary, "\xab\xcd"},
    {"bytes of one digit", "hex:1,2", kRegBinary, "\x01\x02"},
    {"a comma at the end", "hex:01,", kRegBinary, "\x01"},
    {"line breaks", "hex:01,\\\n  02,\\\r\n  03", kRegBinary, "\x01\x02\x03"},
    {"a text of another type is UTF-16", R"(str(4d):"a")", 77, "a\0\0\0"s},
    {"an odd byte of a text is left out", "hex(1):61,00,62", kRegSz, "a"},
};

TEST(RegistryData, ReadsMoreThanItWrites) {
  for (const DataCase& row : kReadOnly) {
    SCOPED_TRACE(row.what);
    const std::optional<RegistryValue> value = ParseValueData(row.data);
    ASSERT_TRUE(value);
    EXPECT_EQ(value->type, row.type);
    EXPECT_EQ(value->data, row.bytes);
  }
}

TEST(RegistryData, KnowsWhatMakesNoSense) {
  for (const char* data : {"",
                           "x",
                           "\"",
                           "\"x",
                           "\"x\"y",
                           "\"x\\\"",
                           "dword:",
                           "dword:xyz",
                           "dword:123456789",
                           "dword:-1",
                           "hex",
                           "hex:zz",
                           "hex:001",
                           "hex:01,,02",
                           "hex:01,\\",
                           "hex:01,\\ 02",
                           "hex(:01",
                           "hex():01",
                           "hex(x):01",
                           "hex(123456789):01",
                           "hex(1)01",
                           "str:\"x\"",
                           "str(2):x",
                           "str(2):",
                           "str(2)",
                           "string"}) {
    EXPECT_FALSE(ParseValueData(data)) << data;
  }
}

TEST(RegistryData, WritesNames) {
  const RegistryValue value{kRegSz, "x\0"s};
  EXPECT_EQ(FormatValueLines("", value, "\n"), "@=\"x\"\n");
  EXPECT_EQ(FormatValueLines("@", value, "\n"), "\"@\"=\"x\"\n");
  EXPECT_EQ(FormatValueLines(R"(a "b" \)", value, "\r\n"), "\"a \\\"b\\\" \\\\\"=\"x\"\r\n");
}

TEST(RegistryData, BreaksLongData) {
  const std::string bytes(60, '\x11');
  EXPECT_EQ(FormatValueLines("binary", {kRegBinary, bytes}, "\n"),
            "\"binary\"=hex:11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,\\\n"
            "  11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,11,\\\n"
            "  11,11,11,11,11,11,11,11,11,11,11,11,11\n");
  EXPECT_EQ(FormatValueLines(std::string(80, 'n'), {kRegBinary, "\x01\x02"}, "\r\n"),
            "\"" + std::string(80, 'n') + "\"=hex:01,\\\r\n  02\r\n");
}

TEST(RegistryData, WritesTheLinesOfTheSampleAsTheyAre) {
  int values = 0;
  for (const char* name : {"system.reg", "user.reg", "userdef.reg"}) {
    const std::string file = testing::SampleFile(name);
    for (std::size_t at = 0; at < file.size();) {
      const std::optional<ValueLines> lines = ReadValueLines(file, at);
      const std::size_t next = lines ? lines->next : ReadLine(file, at).next;
      if (lines) {
        const std::optional<RegistryValue> value = ParseValueData(lines->data);
        ASSERT_TRUE(value) << lines->name;
        EXPECT_EQ(FormatValueLines(lines->name, *value, "\n"), file.substr(at, next - at));
        ++values;
      }
      at = next;
    }
  }
  EXPECT_GT(values, 100);
}

}  // namespace
}  // namespace zent
