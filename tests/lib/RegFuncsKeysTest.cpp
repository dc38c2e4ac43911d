#include <gtest/gtest.h>

#include <string>

#include "lib/RegFuncs.h"
#include "lib/TestMachine.h"

namespace zent {
namespace {

using namespace std::string_literals;
using testing::TestMachine;

constexpr const char* kKorvoKey = R"(Software\Korvo)";

TEST(RootKeys, AreNamedByTheirIndex) {
  constexpr const char* kNames[] = {"HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE",
                                    "HKEY_USERS"};
  ASSERT_EQ(kRootKeys.size(), std::size(kNames));
  for (std::size_t index = 0; index < kRootKeys.size(); ++index) {
    EXPECT_EQ(GetRootKeyName(kRootKeys[index]), kNames[index]);
    EXPECT_EQ(static_cast<std::uint64_t>(kRootKeys[index]), 0x80000000U + index);
  }
  EXPECT_EQ(GetRootKeyName(KeyHandle::None), "");
  EXPECT_EQ(GetRootKeyName(KeyHandle{0x80000004}), "");
}

TEST(OpenRegKey, OpensWhatExists) {
  TestMachine machine;
  machine.registry.PutKey(KeyHandle::CurrentUser, kKorvoKey);

  KeyHandle key = KeyHandle::None;
  ASSERT_TRUE(OpenRegKey(machine.registry, KeyHandle::CurrentUser, R"(SOFTWARE\korvo)", key));
  EXPECT_NE(key, KeyHandle::None);
  EXPECT_TRUE(CloseRegKey(machine.registry, key));
  EXPECT_EQ(machine.registry.OpenKeyCount(), 0U);
}

TEST(OpenRegKey, LeavesTheHandleAloneOnFailure) {
  TestMachine machine;
  KeyHandle key = KeyHandle::Users;
  EXPECT_FALSE(OpenRegKey(machine.registry, KeyHandle::CurrentUser, kKorvoKey, key));
  EXPECT_EQ(key, KeyHandle::Users);
  EXPECT_FALSE(machine.registry.KeyExists(KeyHandle::CurrentUser, kKorvoKey));
}

TEST(CloseRegKey, SaysWhenItFails) {
  TestMachine machine;
  EXPECT_FALSE(CloseRegKey(machine.registry, KeyHandle{12345}));
}

TEST(CreateRegKey, CreatesUnderTheRootDespiteALeadingBackslash) {
  TestMachine machine;
  KeyHandle key = KeyHandle::None;
  EXPECT_TRUE(
      CreateRegKey(machine.registry, KeyHandle::LocalMachine, R"(\Software\Korvo\New)", key).ok());
  EXPECT_NE(key, KeyHandle::None);
  EXPECT_TRUE(machine.registry.KeyExists(KeyHandle::LocalMachine, R"(Software\Korvo\New)"));
}

TEST(CreateRegKey, TakesOneLeadingBackslashAlone) {
  TestMachine machine;
  KeyHandle key = KeyHandle::Users;
  EXPECT_FALSE(
      CreateRegKey(machine.registry, KeyHandle::LocalMachine, R"(\\Software\Korvo)", key).ok());
  EXPECT_EQ(key, KeyHandle::Users);
}

TEST(CreateRegKey, OpensWhatExists) {
  TestMachine machine;
  machine.registry.PutText(KeyHandle::CurrentUser, kKorvoKey, "v", "kept");
  KeyHandle key = KeyHandle::None;
  ASSERT_TRUE(CreateRegKey(machine.registry, KeyHandle::CurrentUser, kKorvoKey, key).ok());
  std::string text;
  EXPECT_TRUE(GetRegValue(machine.ports, key, "v", text));
  EXPECT_EQ(text, "kept");
}

TEST(CreateRegKey, ReturnsWhatWentWrong) {
  TestMachine machine;
  machine.registry.log().FailChange(1, StandardError(kPathFileAccess));
  KeyHandle key = KeyHandle::None;
  EXPECT_EQ(CreateRegKey(machine.registry, KeyHandle::CurrentUser, kKorvoKey, key).number(),
            kPathFileAccess);
  EXPECT_EQ(key, KeyHandle::None);
}

TEST(SetRegValue, WritesAText) {
  TestMachine machine;
  KeyHandle key = KeyHandle::None;
  ASSERT_TRUE(CreateRegKey(machine.registry, KeyHandle::CurrentUser, kKorvoKey, key).ok());

  EXPECT_TRUE(SetRegValue(machine.registry, key, "Path", R"(C:\Korvo)").ok());
  EXPECT_TRUE(SetRegValue(machine.registry, key, "", "default").ok());

  const auto stored = machine.registry.Value(KeyHandle::CurrentUser, kKorvoKey, "Path");
  ASSERT_TRUE(stored.has_value());
  EXPECT_EQ(stored->type, kRegSz);
  std::string text;
  EXPECT_TRUE(GetRegValue(machine.ports, key, "path", text));
  EXPECT_EQ(text, R"(C:\Korvo)");
  EXPECT_TRUE(GetRegValue(machine.ports, key, "", text));
  EXPECT_EQ(text, "default");
}

TEST(SetRegValue, ReturnsWhatWentWrong) {
  TestMachine machine;
  machine.registry.log().FailWhere("SetText", StandardError(kPathFileAccess));
  EXPECT_EQ(SetRegValue(machine.registry, KeyHandle::CurrentUser, "v", "x").number(),
            kPathFileAccess);
}

struct ValueCase {
  const char* what;
  std::uint32_t type;
  std::string data;
  const char* text;  ///< null: it cannot be read
};

const ValueCase kValueCases[] = {
    {"a text", kRegSz, "Korvo", "Korvo"},
    {"a text with its NUL", kRegSz, "Korvo\0"s, "Korvo"},
    {"a text ends at its first NUL", kRegSz, "a\0b\0"s, "a"},
    {"a text of a NUL", kRegSz, "\0"s, ""},
    {"an empty text", kRegSz, "", ""},
    {"a text with variables stays", kRegSz, "%Name%", "%Name%"},
    {"an expandable text", kRegExpandSz, "a %Name% b\0"s, "a Korvo b"},
    {"an unknown variable stays", kRegExpandSz, "%None%\\x", "%None%\\x"},
    {"an expandable text ends at its first NUL", kRegExpandSz, "a\0%Name%\0"s, "a"},
    {"an expanded text ends at its first NUL", kRegExpandSz, "a%Nul%d", "ab"},
    {"a number", kRegDword, "\1\0\0\0"s, nullptr},
    {"bytes", kRegBinary, "abc", nullptr},
    {"a list of texts", kRegMultiSz, "a\0b\0\0"s, nullptr},
    {"no type", kRegNone, "abc", nullptr},
    {"a type of its own", 77, "abc", nullptr},
};

TEST(GetRegValue, ReadsTextsOnly) {
  for (const ValueCase& row : kValueCases) {
    SCOPED_TRACE(row.what);
    TestMachine machine;
    machine.system.environment = {{"Name", "Korvo"}, {"Nul", "b\0c"s}};
    machine.registry.PutValue(KeyHandle::CurrentUser, kKorvoKey, "v", {row.type, row.data});
    KeyHandle key = KeyHandle::None;
    ASSERT_TRUE(OpenRegKey(machine.registry, KeyHandle::CurrentUser, kKorvoKey, key));

    std::string text = "before";
    EXPECT_EQ(GetRegValue(machine.ports, key, "v", text), row.text != nullptr);
    EXPECT_EQ(text, row.text != nullptr ? row.text : "before");
  }
}

TEST(GetRegValue, LeavesTheTextAloneWhenTheValueIsMissing) {
  TestMachine machine;
  machine.registry.PutKey(KeyHandle::CurrentUser, kKorvoKey);
  std::string text = "before";
  EXPECT_FALSE(GetRegValue(machine.ports, KeyHandle::CurrentUser, "none", text));
  EXPECT_EQ(text, "before");
}

TEST(GetRegValue, CutsAnExpandedTextAtTheBufferInCharacters) {
  TestMachine machine;
  std::string umlauts;
  for (int count = 0; count < 1100; ++count) umlauts += "\xC3\xA4";
  machine.system.environment = {{"Long", umlauts}};
  machine.registry.PutValue(KeyHandle::CurrentUser, "", "v", {kRegExpandSz, "%Long%"});
  std::string text;
  EXPECT_TRUE(GetRegValue(machine.ports, KeyHandle::CurrentUser, "v", text));
  EXPECT_EQ(text, umlauts.substr(0, std::size_t{2} * 1023));
}

TEST(GetRegValue, DoesNotCutAPlainText) {
  TestMachine machine;
  const std::string text_of_2000(2000, 'x');
  machine.registry.PutText(KeyHandle::CurrentUser, "", "v", text_of_2000);
  std::string text;
  EXPECT_TRUE(GetRegValue(machine.ports, KeyHandle::CurrentUser, "v", text));
  EXPECT_EQ(text, text_of_2000);
}

}  // namespace
}  // namespace zent
