#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/Status.h"

namespace zent {

/// An open registry key, or one of the predefined roots (numbered as in winreg.h).
enum class KeyHandle : std::uint64_t {
  None = 0,
  ClassesRoot = 0x80000000,
  CurrentUser = 0x80000001,
  LocalMachine = 0x80000002,
  Users = 0x80000003,
};

/// Value types (winnt.h); a value may hold any other number.
inline constexpr std::uint32_t kRegNone = 0;
inline constexpr std::uint32_t kRegSz = 1;
inline constexpr std::uint32_t kRegExpandSz = 2;
inline constexpr std::uint32_t kRegBinary = 3;
inline constexpr std::uint32_t kRegDword = 4;
inline constexpr std::uint32_t kRegMultiSz = 7;

struct RegistryValue {
  std::uint32_t type = kRegNone;
  /// UTF-8 for kRegSz, kRegExpandSz and kRegMultiSz, with every NUL as stored; bytes for all
  /// others.
  std::string data;
};

/// The registry of the machine, in the view of this program's own width. Key paths are relative to
/// `parent`, use backslashes, and match without regard to case, as value names do; trailing and
/// doubled backslashes are tolerated, a leading one is kPathFileAccess. A missing key or value is
/// kFileNotFound.
class Registry {
 public:
  virtual ~Registry() = default;

  /// Opens an existing key (RegOpenKey); an empty path opens `parent` itself.
  virtual Result<KeyHandle> OpenKey(KeyHandle parent, std::string_view path) = 0;
  /// Opens a key, creating every missing level of the path (RegCreateKey).
  virtual Result<KeyHandle> CreateKey(KeyHandle parent, std::string_view path) = 0;
  /// Closes what OpenKey and CreateKey gave; a predefined root may be closed without effect.
  /// Reports what kept a key that was created from being stored.
  virtual Status CloseKey(KeyHandle key) = 0;

  /// The value called `name`, an empty name being the key's default value (RegQueryValueEx). A
  /// kRegExpandSz value comes unexpanded.
  virtual Result<RegistryValue> QueryValue(KeyHandle key, std::string_view name) = 0;
  /// Stores `text` as a kRegSz value (RegSetValueEx). When it returns, the value is stored.
  virtual Status SetText(KeyHandle key, std::string_view name, std::string_view text) = 0;
};

}  // namespace zent
