#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <string>

#include "RegistryKeys.h"
#include "contracts/RegistryContract.h"
#include "platform/win32/registry/Win32Registry.h"

namespace zent::testing {
namespace {

using namespace std::string_literals;

constexpr KeyHandle kUser = KeyHandle::CurrentUser;

class Win32Machine : public RegistryMachine {
 public:
  Registry& registry() override { return *registry_; }
  void Restart() override { registry_ = std::make_unique<Win32Registry>(); }

 private:
  CleanKeys keys_;
  std::unique_ptr<Win32Registry> registry_ = std::make_unique<Win32Registry>();
};

bool IsWine() {
  return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
}

const RegistryAdapter kWin32Machine = {.name = "win32",
                                       .make = [] { return std::make_unique<Win32Machine>(); },
                                       .longest_key_name = IsWine() ? 254U : 255U};

INSTANTIATE_TEST_SUITE_P(Win32, RegistryContract, ::testing::Values(kWin32Machine));

class Win32RegistryTest : public ::testing::Test {
 protected:
  KeyHandle Probe() { return registry_.CreateKey(kUser, kProbeKey).value_or(KeyHandle::None); }
  RegistryValue Query(std::string_view name) {
    const Result<RegistryValue> value = registry_.QueryValue(Probe(), name);
    EXPECT_TRUE(value.ok());
    return value.value_or(RegistryValue{});
  }
  Win32Registry& registry() { return registry_; }

 private:
  CleanKeys keys_;
  Win32Registry registry_;
};

struct RawCase {
  const char* what;
  const char* name;
  DWORD type;
  std::string stored;
  std::string data;
};

const RawCase kRawCases[] = {
    {"a text whose NUL was not counted gets it", "uncounted", REG_SZ, "Text", "Text\0"s},
    {"a text without data", "nothing", REG_SZ, "", ""},
    {"an expandable text stays as it is", "expand", REG_EXPAND_SZ, "%SystemRoot%\\x\0"s,
     "%SystemRoot%\\x\0"s},
    {"a list", "multi", REG_MULTI_SZ, "one\0zw\xF6lf\0\0"s, "one\0zw\u00f6lf\0\0"s},
    {"bytes are no text", "binary", REG_BINARY, "\xE4\x80\0\xFF"s, "\xE4\x80\0\xFF"s},
    {"a number", "dword", REG_DWORD, "\x01\0\0\x80"s, "\x01\0\0\x80"s},
    {"a type without a name", "odd", 0x80000001, "ab", "ab"},
};

TEST_F(Win32RegistryTest, GivesValuesOfEveryTypeAsOtherProgramsStoredThem) {
  for (const RawCase& row : kRawCases) {
    SCOPED_TRACE(row.what);
    StoreRaw(row.name, row.type, row.stored);
    const RegistryValue value = Query(row.name);
    EXPECT_EQ(value.type, row.type);
    EXPECT_EQ(value.data, row.data);
  }
}

TEST_F(Win32RegistryTest, GivesValuesOfAnyLength) {
  for (const std::size_t size : {1023U, 1024U, 1025U, 70'000U, 2'000'000U}) {
    SCOPED_TRACE(size);
    StoreRaw("bytes", REG_BINARY, std::string(size, '\xE4'));
    EXPECT_EQ(Query("bytes").data, std::string(size, '\xE4'));
    ASSERT_TRUE(registry().SetText(Probe(), "text", std::string(size, 'x')).ok());
    EXPECT_EQ(Query("text").data, WithNul(std::string(size, 'x')));
  }
}

TEST_F(Win32RegistryTest, KeepsANulWithinAText) {
  ASSERT_TRUE(registry().SetText(Probe(), "v", "ab\0cd"s).ok());
  EXPECT_EQ(Query("v").data, "ab\0cd\0"s);
}

TEST_F(Win32RegistryTest, TextsPassThroughTheAnsiCodePage) {
  ASSERT_TRUE(registry().SetText(Probe(), "v", "a\u0416\u00e4").ok());
  EXPECT_EQ(Query("v").data, "a?\u00e4\0"s);
}

TEST_F(Win32RegistryTest, AScrambledPasswordComesBack) {
  std::string scrambled;
  for (const char c : {'\x81', '\x8D', '\x8F', '\x90', '\x9D'}) scrambled += "\xC2"s + c;
  ASSERT_TRUE(registry().SetText(Probe(), "v", scrambled).ok());
  EXPECT_EQ(Query("v").data, WithNul(scrambled));
}

TEST_F(Win32RegistryTest, ANameThatTheCodePageCannotSpellIsNone) {
  const KeyHandle key = Probe();
  ASSERT_TRUE(registry().SetText(key, "?", "similar").ok());
  ASSERT_TRUE(registry().CreateKey(key, "?").ok());
  for (const std::string& name : {"\u0416"s, "?\0x"s}) {
    EXPECT_EQ(registry().QueryValue(key, name).number(), kFileNotFound);
    EXPECT_EQ(registry().SetText(key, name, "x").number(), kPathFileAccess);
    EXPECT_EQ(registry().OpenKey(key, name).number(), kFileNotFound);
    EXPECT_EQ(registry().CreateKey(key, name).number(), kPathFileAccess);
  }
  EXPECT_EQ(Query("?").data, "similar\0"s);
}

TEST_F(Win32RegistryTest, AKeyNameThatIsTooLongIsNone) {
  const std::string name(256, 'k');
  EXPECT_EQ(registry().OpenKey(Probe(), name).number(), kFileNotFound);
  EXPECT_EQ(registry().OpenKey(Probe(), name + R"(\below)").number(), kFileNotFound);
  EXPECT_EQ(registry().CreateKey(Probe(), name + R"(\below)").number(), kPathFileAccess);
}

TEST_F(Win32RegistryTest, AValueNameThatIsTooLongIsRefused) {
  const std::string name(20'000, 'v');
  EXPECT_EQ(registry().SetText(Probe(), name, "x").number(), kPathFileAccess);
  EXPECT_FALSE(registry().QueryValue(Probe(), name).ok());
}

TEST_F(Win32RegistryTest, AnEmptyPathIsAHandleOfItsOwn) {
  const KeyHandle key = Probe();
  const Result<KeyHandle> opened = registry().OpenKey(key, "");
  const Result<KeyHandle> created = registry().CreateKey(key, "");
  ASSERT_TRUE(opened.ok());
  ASSERT_TRUE(created.ok());
  EXPECT_TRUE(registry().CloseKey(opened.value()).ok());
  EXPECT_TRUE(registry().CloseKey(created.value()).ok());
  EXPECT_TRUE(registry().SetText(key, "v", "still open").ok());
}

TEST_F(Win32RegistryTest, AHandleIsNeverUsedTwice) {
  const KeyHandle first = Probe();
  ASSERT_TRUE(registry().CloseKey(first).ok());
  EXPECT_NE(Probe(), first);
  EXPECT_EQ(registry().SetText(first, "v", "x").number(), kPathFileAccess);
}

TEST_F(Win32RegistryTest, AKeyThatAnotherRemovedIsMissing) {
  const KeyHandle key = Probe();
  ASSERT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, kProbeKey), ERROR_SUCCESS);
  EXPECT_EQ(registry().SetText(key, "v", "x").number(), kFileNotFound);
  EXPECT_EQ(registry().QueryValue(key, "v").number(), kFileNotFound);
  EXPECT_TRUE(registry().CloseKey(key).ok());
}

/// The number that the system gives to the next handle.
ULONG_PTR NextHandle() {
  const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
  CloseHandle(event);
  return reinterpret_cast<ULONG_PTR>(event);
}

TEST_F(Win32RegistryTest, ClosesWhatIsStillOpenAtItsEnd) {
  const ULONG_PTR before = NextHandle();
  {
    Win32Registry own;
    for (int i = 0; i < 50; ++i) EXPECT_TRUE(own.CreateKey(kUser, kProbeKey).ok());
    EXPECT_GE(NextHandle(), before + 50);
  }
  EXPECT_LT(NextHandle(), before + 50);
}

TEST_F(Win32RegistryTest, AnotherProgramsChangeIsSeenAtOnce) {
  const KeyHandle key = Probe();
  ASSERT_TRUE(registry().SetText(key, "v", "ours").ok());
  StoreRaw("v", REG_SZ, "theirs\0"s);
  EXPECT_EQ(registry().QueryValue(key, "v").value_or({}).data, "theirs\0"s);
}

TEST_F(Win32RegistryTest, AKeyThatMayOnlyBeReadIsRead) {
  StoreRaw("v", REG_SZ, "x\0"s);
  const ProbeRights rights("D:(A;;KR;;;WD)");
  const Result<KeyHandle> key = registry().OpenKey(kUser, kProbeKey);
  ASSERT_TRUE(key.ok());
  EXPECT_EQ(registry().QueryValue(key.value(), "v").value_or({}).data, "x\0"s);
  EXPECT_EQ(registry().SetText(key.value(), "v", "y").number(), kPathFileAccess);
}

TEST_F(Win32RegistryTest, AKeyThatNobodyMayReadIsAccessDenied) {
  StoreRaw("v", REG_SZ, "x\0"s);
  const ProbeRights rights("D:");
  // Its owner may always see who has which right, and so open it.
  const Result<KeyHandle> key = registry().OpenKey(kUser, kProbeKey);
  ASSERT_TRUE(key.ok());
  EXPECT_EQ(registry().QueryValue(key.value(), "v").number(), kPathFileAccess);
  EXPECT_EQ(registry().SetText(key.value(), "v", "y").number(), kPathFileAccess);
}

}  // namespace
}  // namespace zent::testing
