#include "RegistryKeys.h"

#include <gtest/gtest.h>
#include <sddl.h>
#include <shlwapi.h>

namespace zent::testing {

void CleanKeys::Remove() {
  for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    SHDeleteKeyA(root, R"(Software\ZentContract)");
    SHDeleteKeyA(root, R"(Software\Classes\ZentContract)");
    SHDeleteKeyA(root, R"(Software\K)");
  }
  // What the recorded steps make elsewhere.
  SHDeleteKeyA(HKEY_CURRENT_USER, "Software/K");
  SHDeleteKeyA(HKEY_CURRENT_USER, "Software/K/Slash");
  SHDeleteKeyA(HKEY_LOCAL_MACHINE, "Top");
  SHDeleteKeyA(HKEY_LOCAL_MACHINE, R"(Software\Classes\Top)");
}

void StoreRaw(const char* name, DWORD type, std::string_view data) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, kProbeKey, &key), ERROR_SUCCESS);
  EXPECT_EQ(RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(data.data()),
                           static_cast<DWORD>(data.size())),
            ERROR_SUCCESS);
  RegCloseKey(key);
}

void ProbeRights::Set(const char* rights) {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorA(rights, SDDL_REVISION_1,
                                                                   &descriptor, nullptr));
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, kProbeKey, 0, WRITE_DAC, &key), ERROR_SUCCESS);
  EXPECT_EQ(RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor), ERROR_SUCCESS);
  RegCloseKey(key);
  LocalFree(descriptor);
}

}  // namespace zent::testing
