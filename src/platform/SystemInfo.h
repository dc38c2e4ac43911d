#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zent {

/// The version record of the operating system (GetVersionEx).
struct OsVersion {
  std::uint32_t platform = 2;  ///< 2 the NT family, 1 the 9x family
  std::uint32_t major = 0;
  std::uint32_t minor = 0;
};

inline constexpr std::uint32_t kPlatform9x = 1;
inline constexpr std::uint32_t kPlatformNt = 2;

/// What the system says of itself. Folders are full paths without a trailing backslash.
class SystemInfo {
 public:
  virtual ~SystemInfo() = default;

  virtual OsVersion Version() = 0;
  virtual std::string WindowsFolder() = 0;
  virtual std::string SystemFolder() = 0;
  virtual std::string TempFolder() = 0;
  /// An environment variable, its name in any case; nothing when it is not set.
  virtual std::optional<std::string> EnvironmentVariable(std::string_view name) = 0;

  /// Bytes of `text` in the ANSI code page that the machine has set, 1252 unless it says otherwise;
  /// a character outside it becomes "?".
  virtual std::string ToAnsi(std::string_view text) = 0;
  /// UTF-8 of bytes in that code page; never fails. Bytes that the page leaves undefined survive
  /// the way there and back.
  virtual std::string FromAnsi(std::string_view bytes) = 0;
};

/// `text` with every "%NAME%" of a variable that is set replaced by its value
/// (ExpandEnvironmentStrings); an unknown name and a lone percent sign stay.
std::string ExpandEnvironment(SystemInfo& system, std::string_view text);

}  // namespace zent
