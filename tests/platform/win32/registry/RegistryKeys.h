#pragma once

#include <windows.h>

#include <string_view>

namespace zent::testing {

/// Removes the keys that the tests of the registry make, with all below them, now and at the end.
class CleanKeys {
 public:
  CleanKeys() { Remove(); }
  ~CleanKeys() { Remove(); }
  CleanKeys(const CleanKeys&) = delete;
  CleanKeys& operator=(const CleanKeys&) = delete;

 private:
  static void Remove();
};

/// The key of HKEY_CURRENT_USER in which tests store values as other programs do.
inline constexpr const char* kProbeKey = R"(Software\ZentContract\Probe)";

/// Stores a value of any type in kProbeKey, data and name in ANSI.
void StoreRaw(const char* name, DWORD type, std::string_view data);

/// Gives kProbeKey these rights (SDDL) and everybody all of them at the end.
class ProbeRights {
 public:
  explicit ProbeRights(const char* rights) { Set(rights); }
  ~ProbeRights() { Set("D:(A;;KA;;;WD)"); }
  ProbeRights(const ProbeRights&) = delete;
  ProbeRights& operator=(const ProbeRights&) = delete;

 private:
  static void Set(const char* rights);
};

}  // namespace zent::testing
