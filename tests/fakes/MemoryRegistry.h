#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fakes/CallLog.h"
#include "platform/Registry.h"

namespace zent::testing {

/// A registry in memory, with the contract of Registry. HKEY_USERS shows nothing of
/// HKEY_CURRENT_USER.
class MemoryRegistry : public Registry {
 public:
  // What the test sets up and looks at. These calls are not recorded and never fail.

  /// Makes a key with all its levels.
  void PutKey(KeyHandle root, std::string_view path);
  /// Stores a value of any type, with the levels of its key.
  void PutValue(KeyHandle root, std::string_view path, std::string_view name, RegistryValue value);
  /// As PutValue, a kRegSz value.
  void PutText(KeyHandle root, std::string_view path, std::string_view name, std::string_view text);
  /// A stored value, a kRegSz text without its closing NUL; nothing when key or value is missing.
  std::optional<RegistryValue> Value(KeyHandle root, std::string_view path,
                                     std::string_view name) const;
  bool KeyExists(KeyHandle root, std::string_view path) const;
  /// How many keys are open: 0 when every one was closed.
  std::size_t OpenKeyCount() const { return open_keys_.size(); }

  /// What was called ("OpenKey HKLM\SOFTWARE", "SetText HKCU\Software\Korvo|Name") and what is to
  /// fail. CreateKey and SetText are the changing calls.
  CallLog& log() { return log_; }

  // Registry

  Result<KeyHandle> OpenKey(KeyHandle parent, std::string_view path) override;
  Result<KeyHandle> CreateKey(KeyHandle parent, std::string_view path) override;
  Status CloseKey(KeyHandle key) override;
  Result<RegistryValue> QueryValue(KeyHandle key, std::string_view name) override;
  Status SetText(KeyHandle key, std::string_view name, std::string_view text) override;

 private:
  using Values = std::map<std::string, RegistryValue>;  // by folded name

  /// Where an open key lies: "HKLM\SOFTWARE\Korvo", spelled as it was opened.
  std::optional<std::string> PathOf(KeyHandle key) const;
  Result<std::string> PathBelow(KeyHandle parent, std::string_view path) const;
  KeyHandle Open(const std::string& path);
  void MakeLevels(const std::string& path);

  std::map<std::string, Values> keys_;  // by folded path; the roots themselves are not in it
  std::map<KeyHandle, std::string> open_keys_;
  std::uint64_t last_handle_ = 0;
  CallLog log_;
};

}  // namespace zent::testing
