#pragma once

#include <windows.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string_view>

#include "platform/Registry.h"

namespace zent {

/// The registry of Windows, in the view of this process: a 32-bit program on 64-bit Windows gets
/// what the system redirects it to. HKEY_CLASSES_ROOT is the system's merge of the machine's and
/// the user's classes.
///
/// Names go through the ANSI code page: one that it cannot spell is of no key and no value. A text
/// that is stored gets "?" for such a character.
class Win32Registry : public Registry {
 public:
  Result<KeyHandle> OpenKey(KeyHandle parent, std::string_view path) override;
  Result<KeyHandle> CreateKey(KeyHandle parent, std::string_view path) override;
  Status CloseKey(KeyHandle key) override;
  Result<RegistryValue> QueryValue(KeyHandle key, std::string_view name) override;
  Status SetText(KeyHandle key, std::string_view name, std::string_view text) override;

 private:
  struct KeyCloser {
    using pointer = HKEY;  // NOLINT(readability-identifier-naming): unique_ptr asks for it
    void operator()(HKEY key) const { RegCloseKey(key); }
  };
  using UniqueKey = std::unique_ptr<HKEY, KeyCloser>;

  /// The system's handle of a root or of an open key; null for any other number.
  HKEY Find(KeyHandle key) const;
  KeyHandle Remember(HKEY key);

  // Handles are numbered anew, so that one used after its end is refused: the system gives the
  // number of a closed key to the next thing that is opened.
  std::map<KeyHandle, UniqueKey> opened_;
  std::uint64_t last_handle_ = 0;
};

}  // namespace zent
