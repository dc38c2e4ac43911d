#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/prefix/registry/RegistryFile.h"
#include "platform/prefix/registry/RegistryMachines.h"

namespace zent {
namespace {

using namespace std::string_literals;
using ::testing::HasSubstr;

const std::string kHead = "WINE REGISTRY Version 2\n";

Result<RegistryFile> Load(const std::string& lines) {
  return RegistryFile::Parse(kHead + lines, "user.reg");
}

std::string Data(const RegistryFile& file, const KeyPath& path, const std::string& name) {
  const std::optional<KeyId> key = file.FindKey(path);
  if (!key) return "(no key)";
  return file.FindValue(*key, name).value_or(RegistryValue{0, "(no value)"}).data;
}

struct LoadCase {
  const char* what;
  std::string lines;
  KeyPath path;
  std::string name;
  std::string data;
};

const LoadCase kLoads[] = {
    {"a value of a key",
     "[Soft\\\\Korvo] 1\n#time=1\n\"v\"=\"x\"\n",
     {"Soft", "Korvo"},
     "v",
     "x\0"s},
    {"names in any case", "[Soft\\\\Korvo] 1\n\"v\"=\"x\"\n", {"SOFT", "kORVO"}, "V", "x\0"s},
    {"a key that exists through its subkey", "[a\\\\b\\\\c] 1\n", {"A", "B"}, "v", "(no value)"},
    {"a missing key", "[a\\\\b] 1\n", {"b"}, "v", "(no key)"},
    {"the default value", "[a] 1\n@=\"x\"\n\"\\x40\"=\"y\"\n", {"a"}, "", "x\0"s},
    {"children before their parent",
     "[a\\\\b] 1\n\"v\"=\"1\"\n\n[a] 1\n\"v\"=\"2\"\n",
     {"a"},
     "v",
     "2\0"s},
    {"two sections of one key, the first",
     "[a] 1\n\"v\"=\"1\"\n[b] 1\n[A] 1\n\"w\"=\"2\"\n",
     {"a"},
     "v",
     "1\0"s},
    {"two sections of one key, the second",
     "[a] 1\n\"v\"=\"1\"\n[b] 1\n[A] 1\n\"w\"=\"2\"\n",
     {"a"},
     "w",
     "2\0"s},
    {"a value that comes twice", "[a] 1\n\"v\"=\"1\"\n\"V\"=\"2\"\n", {"a"}, "v", "2\0"s},
    {"a value that comes twice, in two sections",
     "[a] 1\n\"v\"=\"1\"\n\n[A]\n\"V\"=\"2\"\n",
     {"a"},
     "v",
     "2\0"s},
    {"no time at all", "[a]\n\"v\"=\"x\"\n", {"a"}, "v", "x\0"s},
    {"no empty lines between", "[a] 1\n\"v\"=\"1\"\n[b] 1\n\"v\"=\"2\"\n", {"a"}, "v", "1\0"s},
    {"class and unknown marks",
     "[a] 1\n#time=1\n#class=\"x\"\n#more\n\"v\"=\"x\"\n",
     {"a"},
     "v",
     "x\0"s},
    {"remarks between values",
     "[a] 1\n; one\n\"v\"=\"x\"\n; two\n\"w\"=\"y\"\n",
     {"a"},
     "w",
     "y\0"s},
    {"returns before the line feeds",
     "[a] 1\r\n#time=1\r\n\"v\"=hex:01,\\\r\n  02\r\n\"w\"=\"x\"\r\n",
     {"a"},
     "w",
     "x\0"s},
    {"continued data", "[a] 1\n\"v\"=hex:01,\\\n  02\n", {"a"}, "v", "\x01\x02"},
    {"values of the root", "[] 1\n\"v\"=\"x\"\n", {}, "v", "x\0"s},
    {"empty names in a path", "[a\\\\\\\\b\\\\] 1\n\"v\"=\"x\"\n", {"a", "b"}, "v", "x\0"s},
    {"raw UTF-8 in a key's name", "[\u00e4] 1\n\"v\"=\"x\"\n", {"\u00c4"}, "v", "x\0"s},
    {"escapes in a key's name",
     "[k\\xe4se\\\\\\[x\\]] 1\n\"v\"=\"x\"\n",
     {"k\u00e4se", "[x]"},
     "v",
     "x\0"s},
    {"a line of nonsense", "[a] 1\nnonsense\n\"v\"=\"x\"\n", {"a"}, "v", "x\0"s},
    {"data of nonsense", "[a] 1\n\"v\"=nonsense\n\"w\"=\"x\"\n", {"a"}, "v", "(no value)"},
    {"data of nonsense behind good data",
     "[a] 1\n\"v\"=\"x\"\n\"v\"=nonsense\n",
     {"a"},
     "v",
     "x\0"s},
    {"a text that does not end", "[a] 1\n\"v\"=\"x\n\"w\"=\"y\"\n", {"a"}, "w", "y\0"s},
    {"continued data that do not go on",
     "[a] 1\n\"v\"=hex:01,\\\n\n[b] 1\n\"w\"=\"y\"\n",
     {"b"},
     "w",
     "y\0"s},
    {"... are no data", "[a] 1\n\"v\"=hex:01,\\\n\n[b] 1\n\"w\"=\"y\"\n", {"a"}, "v", "(no value)"},
    {"values below a broken key line are nobody's",
     "[a] 1\n\"v\"=\"1\"\n[b\n\"v\"=\"2\"\n",
     {"a"},
     "v",
     "1\0"s},
    {"values above all keys are nobody's",
     "\"v\"=\"1\"\n\n[a] 1\n\"w\"=\"2\"\n",
     {"a"},
     "v",
     "(no value)"},
    {"the last text needs no line break", "[a] 1\n\"v\"=\"x\"", {"a"}, "v", "x\0"s},
    {"the last number needs no line break", "[a] 1\n\"v\"=dword:00000001", {"a"}, "v", "\1\0\0\0"s},
    {"NUL bytes in a text", "[a] 1\n\"v\"=\"x\0y\"\n"s, {"a"}, "v", "x\0y\0"s},
};

TEST(RegistryFile, FindsValues) {
  for (const LoadCase& row : kLoads) {
    SCOPED_TRACE(row.what);
    const Result<RegistryFile> file = Load(row.lines);
    ASSERT_TRUE(file.ok());
    EXPECT_EQ(Data(file.value(), row.path, row.name), row.data);
    EXPECT_EQ(file.value().text(), kHead + row.lines);
  }
}

struct RefusedCase {
  const char* what;
  std::string text;
  const char* place;
};

const RefusedCase kRefused[] = {
    {"an empty file", "", "line 1"},
    {"another kind of file", "REGEDIT4\n\n[a]\n", "line 1"},
    {"another version", "WINE REGISTRY Version 1\n", "line 1"},
    {"more in the first line", "WINE REGISTRY Version 2 \n", "line 1"},
    {"half of the first line", "WINE REGIS", "line 1"},
    {"a first line without a break", "WINE REGISTRY Version 2", "line 1"},
    {"zeros instead of text", std::string(64, '\0'), "line 1"},
    {"half of the second line", kHead + ";; All keys rel", "line 2"},
    {"half a key line", kHead + "\n[Software\\\\Kor", "line 3"},
    {"half a time", kHead + "\n[Software] 12", "line 3"},
    {"half a mark", kHead + "\n[Software] 12\n#time=1d", "line 4"},
    {"half a name", kHead + "[a] 1\n\"na", "line 3"},
    {"a name without data", kHead + "[a] 1\n\"name\"=", "line 3"},
    {"half a text", kHead + "[a] 1\n\"v\"=\"x", "line 3"},
    {"a text that ends in an escape", kHead + "[a] 1\n\"v\"=\"x\\\"", "line 3"},
    {"half a number", kHead + "[a] 1\n\"v\"=dword:0000", "line 3"},
    {"bytes that may go on", kHead + "[a] 1\n\"v\"=hex:00,01", "line 3"},
    {"bytes that go on", kHead + "[a] 1\n\"v\"=hex:00,\\", "line 3"},
    {"bytes that go on in a missing line", kHead + "[a] 1\n\"v\"=hex:00,\\\n", "line 3"},
    {"bytes that go on twice", kHead + "[a] 1\n\"v\"=hex:00,\\\n  01,\\\n", "line 4"},
    {"half of the continued bytes", kHead + "[a] 1\n\"v\"=hex:00,\\\n  0", "line 4"},
    {"zeros at the end", kHead + "[a] 1\n" + std::string(10, '\0'), "line 3"},
};

TEST(RegistryFile, RefusesHalfAFileWithItsLine) {
  for (const RefusedCase& row : kRefused) {
    SCOPED_TRACE(row.what);
    const Result<RegistryFile> file = RegistryFile::Parse(row.text, "C/user.reg");
    ASSERT_FALSE(file.ok());
    EXPECT_EQ(file.error().number, kInvalidFileFormat);
    EXPECT_THAT(file.error().description, HasSubstr("C/user.reg, " + std::string(row.place)));
  }
}

TEST(RegistryFile, TakesAFileWithoutKeys) {
  for (const std::string& lines : {""s, "\n"s, ";; All keys relative to REGISTRY\\\\Machine\n"s}) {
    const Result<RegistryFile> file = Load(lines);
    ASSERT_TRUE(file.ok());
    EXPECT_TRUE(file.value().FindKey({}));
    EXPECT_FALSE(file.value().FindKey({"Software"}));
  }
}

struct RootCase {
  const char* what;
  std::string second_line;
  const char* name;
};

const RootCase kRoots[] = {
    {"the user's identifier", R"(;; All keys relative to REGISTRY\\User\\S-1-5-21-0-0-0-1000)",
     "S-1-5-21-0-0-0-1000"},
    {"the machine", R"(;; All keys relative to REGISTRY\\Machine)", "Machine"},
    {"no such line", "", ""},
    {"another remark", ";; Made by hand", ""},
    {"an empty path", ";; All keys relative to ", ""},
};

TEST(RegistryFile, NamesItsRoot) {
  for (const RootCase& row : kRoots) {
    SCOPED_TRACE(row.what);
    const Result<RegistryFile> file = Load(row.second_line + "\n");
    ASSERT_TRUE(file.ok());
    EXPECT_EQ(file.value().RootName(), row.name);
  }
}

TEST(RegistryFile, KnowsSymbolicLinks) {
  const Result<RegistryFile> file =
      RegistryFile::Parse(testing::SampleFile("system.reg"), "system.reg");
  ASSERT_TRUE(file.ok());
  const auto is_link = [&](const KeyPath& path) {
    return file.value().IsLink(file.value().FindKey(path).value_or(kRootKey));
  };
  EXPECT_TRUE(is_link({"Software", "Probe", "Link"}));
  EXPECT_TRUE(is_link({"System", "CurrentControlSet"}));
  EXPECT_FALSE(is_link({"Software", "Probe", "Order"}));
  EXPECT_FALSE(is_link({"Software", "Probe"}));
  EXPECT_FALSE(is_link({}));
}

TEST(RegistryFile, FindsKeysOfOddNames) {
  const Result<RegistryFile> file =
      RegistryFile::Parse(testing::SampleFile("user.reg"), "user.reg");
  ASSERT_TRUE(file.ok());
  for (const char* name :
       {" lead and trail ", "#hash", ";semi", "_u", "a", "A2", "B", "deep", "K\u00c4SE", "tab\tx",
        "with\"quote", "with/slash", "with[open", "with]bracket", "z"}) {
    EXPECT_TRUE(file.value().FindKey({"Software", "Probe", "Keys", name})) << name;
  }
  EXPECT_TRUE(file.value().FindKey({"Software", "Probe", "Wide", "\u0416\u20ac\u05d0"}));
  const std::optional<KeyId> wide =
      file.value().FindKey({"Software", "Probe", "Wide", "\u0436\u20ac\u05d0"});
  ASSERT_TRUE(wide);
  EXPECT_EQ(file.value().FindValue(*wide, "\u0416").value_or(RegistryValue{}).data,
            "\u20ac\u0416"
            "1\U0001f600\xed\xa0\x80x\0"s);
}

}  // namespace
}  // namespace zent
