// The recorded answers of the registry, of this very system under Wine. Left out: a key of another
// user's classes, which Wine does not merge and Windows does.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "RegistryKeys.h"
#include "contracts/RegistryVectors.h"
#include "platform/win32/AnsiText.h"
#include "platform/win32/registry/Win32Registry.h"

namespace zent::testing {
namespace {

std::string AnsiData(const RegistryQuery& row) {
  const bool is_text = row.type == kRegSz || row.type == kRegExpandSz || row.type == kRegMultiSz;
  return is_text ? ShownAnsiOf(row.data) : row.data;
}

TEST(Win32RegistryVectors, QueryValue) {
  const CleanKeys keys;
  for (const RegistryQuery& row : RegistryQueries()) {
    if (row.error == 0) StoreRaw(ShownAnsiOf(row.name).c_str(), row.type, AnsiData(row));
  }
  Win32Registry registry;
  const Result<KeyHandle> key = registry.OpenKey(KeyHandle::CurrentUser, kProbeKey);
  ASSERT_TRUE(key.ok());
  for (const RegistryQuery& row : RegistryQueries()) {
    SCOPED_TRACE(row.name);
    const Result<RegistryValue> value = registry.QueryValue(key.value(), row.name);
    EXPECT_EQ(value.number(), row.error);
    if (!value.ok()) continue;
    EXPECT_EQ(value.value().type, row.type);
    EXPECT_EQ(value.value().data, row.data);
  }
}

/// The names of the subkeys, as the system lists them.
std::vector<std::string> SubkeysOf(const char* path) {
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyA(HKEY_CURRENT_USER, path, &key), ERROR_SUCCESS);
  std::vector<std::string> names;
  char name[256];
  for (DWORD index = 0; RegEnumKeyA(key, index, name, sizeof name) == ERROR_SUCCESS; ++index) {
    names.emplace_back(name);
  }
  RegCloseKey(key);
  return names;
}

TEST(Win32RegistryVectors, CreateAndOpen) {
  const CleanKeys keys;
  Win32Registry registry;
  for (const RegistryStep& row : RegistrySteps()) {
    SCOPED_TRACE(row.path);
    const Result<KeyHandle> key =
        row.create ? registry.CreateKey(row.root, row.path) : registry.OpenKey(row.root, row.path);
    EXPECT_EQ(key.number(), row.error);
    if (key.ok()) {
      EXPECT_TRUE(registry.CloseKey(key.value()).ok());
    }
  }
  EXPECT_EQ(SubkeysOf(R"(Software\K)"),
            std::vector<std::string>(std::begin(kKeysOfSteps), std::end(kKeysOfSteps)));
}

TEST(Win32RegistryVectors, SubkeysOfTheUsers) {
  Win32Registry registry;
  EXPECT_TRUE(registry.OpenKey(KeyHandle::Users, ".Default").ok());
  EXPECT_EQ(registry.OpenKey(KeyHandle::Users, "S-1-5-99").number(), kFileNotFound);
}

}  // namespace
}  // namespace zent::testing
