#include <gtest/gtest.h>

#include <vector>

#include "platform/prefix/registry/RegistryLines.h"

namespace zent {
namespace {

TEST(RegistryLines, EndInALineFeedOrWithTheFile) {
  const std::string_view file = "one\ntwo\r\n\nlast";
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < file.size();) {
    const TextLine line = ReadLine(file, at);
    lines.emplace_back(line.text);
    at = line.next;
  }
  EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "", "last"}));
}

struct KeyLineCase {
  const char* what;
  std::string_view line;
  bool is_key;
  std::string_view path;
  std::string_view rest;
};

constexpr KeyLineCase kKeyLines[] = {
    {"with its time", R"([Software\\Korvo] 1795253793)", true, R"(Software\\Korvo)", " 1795253793"},
    {"without a time", "[Software]", true, "Software", ""},
    {"escaped brackets", R"([a\[b\]c] 1)", true, R"(a\[b\]c)", " 1"},
    {"an escaped backslash before the bracket", R"([a\\] 1)", true, R"(a\\)", " 1"},
    {"an open bracket inside", "[a[b] 1", true, "a[b", " 1"},
    {"the root itself", "[] 1", true, "", " 1"},
    {"no closing bracket", R"([Software\\Korvo)", false, "", ""},
    {"only an escaped one", R"([Software\])", false, "", ""},
    {"no bracket", "Software] 1", false, "", ""},
    {"a blank before", " [Software]", false, "", ""},
    {"empty", "", false, "", ""},
};

TEST(RegistryLines, ReadsKeyLines) {
  for (const KeyLineCase& row : kKeyLines) {
    SCOPED_TRACE(row.what);
    const std::optional<KeyLine> key = ParseKeyLine(row.line);
    ASSERT_EQ(key.has_value(), row.is_key);
    if (!key) continue;
    EXPECT_EQ(key->path, row.path);
    EXPECT_EQ(row.line.substr(key->behind), row.rest);
  }
}

struct NamesCase {
  const char* what;
  std::string_view path;
  std::vector<std::string_view> names;
};

const NamesCase kNames[] = {
    {"one", "Software", {"Software"}},
    {"several", R"(a\\b\\c)", {"a", "b", "c"}},
    {"escapes belong to the name", R"(a\tb\\\[c\]\\\x20ac)", {R"(a\tb)", R"(\[c\])", R"(\x20ac)"}},
    {"empty names are passed over", R"(\\a\\\\b\\)", {"a", "b"}},
    {"none", "", {}},
    {"a lone backslash at the end", "a\\", {"a\\"}},
};

TEST(RegistryLines, DividesEscapedPaths) {
  for (const NamesCase& row : kNames) {
    SCOPED_TRACE(row.what);
    std::vector<std::string_view> names;
    std::size_t at = 0;
    while (const std::optional<std::string_view> name = NextKeyName(row.path, at)) {
      names.push_back(*name);
    }
    EXPECT_EQ(names, row.names);
  }
}

struct ValueCase {
  const char* what;
  std::string file;
  bool is_value;
  std::string name;
  std::string data;
  std::string rest;
};

const ValueCase kValues[] = {
    {"a text", "\"v\"=\"x\"\nnext", true, "v", "\"x\"", "next"},
    {"the default value", "@=\"x\"\nnext", true, "", "\"x\"", "next"},
    {"a name that is an at sign", "\"@\"=\"x\"\nnext", true, "@", "\"x\"", "next"},
    {"an equals sign in the name", "\"a=b\"=\"x\"\n", true, "a=b", "\"x\"", ""},
    {"quotes and backslashes in the name", R"("a\"b\\"="x")", true, R"(a"b\)", R"("x")", ""},
    {"a return before the line feed", "\"v\"=\"x\"\r\nnext", true, "v", "\"x\"", "next"},
    {"continued data", "\"v\"=hex:00,\\\n  01,\\\n  02\nnext", true, "v",
     "hex:00,\\\n  01,\\\n  02", "next"},
    {"continued data with returns", "\"v\"=hex:00,\\\r\n  01\r\nnext", true, "v",
     "hex:00,\\\r\n  01", "next"},
    {"a continuation that is missing", "\"v\"=hex:00,\\\n[Key] 1\n", true, "v", "hex:00,\\",
     "[Key] 1\n"},
    {"a continuation that is another value", "\"v\"=hex:00,\\\n\"w\"=\"x\"\n", true, "v",
     "hex:00,\\", "\"w\"=\"x\"\n"},
    {"only hexadecimal data go on", "\"v\"=\"x\\\n  01\n", true, "v", "\"x\\", "  01\n"},
    {"no closing quote", "\"v=\"", false, "", "", ""},
    {"no equals sign", "\"v\"", false, "", "", ""},
    {"another character behind the name", "\"v\" =\"x\"", false, "", "", ""},
    {"an at sign alone", "@", false, "", "", ""},
    {"no quote", "v=\"x\"", false, "", "", ""},
    {"an empty line", "\nnext", false, "", "", ""},
};

TEST(RegistryLines, ReadsValuesWithTheirContinuation) {
  for (const ValueCase& row : kValues) {
    SCOPED_TRACE(row.what);
    const std::optional<ValueLines> value = ReadValueLines(row.file, 0);
    ASSERT_EQ(value.has_value(), row.is_value);
    if (!value) continue;
    EXPECT_EQ(value->name, row.name);
    EXPECT_EQ(value->data, row.data);
    EXPECT_EQ(row.file.substr(value->next), row.rest);
  }
}

TEST(RegistryLines, KnowsTheRestOfHexadecimalData) {
  EXPECT_TRUE(IsHexContinuation("  00,0a,FF"));
  EXPECT_TRUE(IsHexContinuation("  00,\\"));
  EXPECT_FALSE(IsHexContinuation(""));
  EXPECT_FALSE(IsHexContinuation("  "));
  EXPECT_FALSE(IsHexContinuation("[00]"));
  EXPECT_FALSE(IsHexContinuation("\"00\""));
}

}  // namespace
}  // namespace zent
