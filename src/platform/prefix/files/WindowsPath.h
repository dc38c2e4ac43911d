#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"

/// Windows paths as texts: nothing here looks at a disk.
namespace zent {

/// Characters of a full path at most, unless it starts with "\\?\" (MAX_PATH without its NUL).
inline constexpr std::size_t kMaxPathCharacters = 259;

/// A path taken apart.
struct WindowsPath {
  char drive = 0;                  ///< 'A' to 'Z'
  std::vector<std::string> parts;  ///< none for the drive's root; no "." and no ".."
  bool names_a_folder = false;     ///< ends with a backslash
};

/// A search pattern taken apart.
struct SearchPath {
  WindowsPath folder;
  std::string pattern;  ///< the last part, for Wildcard; empty after a trailing backslash
};

/// The full form of `path`, as GetFullPathName gives it: "C:\a\b". `current_folder` is full. Blanks
/// and dots at the end do not count, nor does one dot at the end of a folder's name; a device name
/// becomes "\\.\NAME". An empty path is kPathNotFound, a full form above kMaxPathCharacters
/// kPathFileAccess.
Result<std::string> FullWindowsPath(std::string_view path, std::string_view current_folder);

/// The parts of the full form of `path`. Refused are characters that no name holds and device names
/// (kBadFileName), shares and devices (kPathNotFound). "\\?\C:\a" is taken literally.
Result<WindowsPath> ParseWindowsPath(std::string_view path, std::string_view current_folder);

/// As ParseWindowsPath for a path whose last part may hold wildcards.
Result<SearchPath> ParseSearchPath(std::string_view path, std::string_view current_folder);

/// True for a name that an entry of a folder can have: no character of \/:*?"<>|, no control, no
/// dot or blank at the end, text in UTF-8, and no device.
bool IsWindowsName(std::string_view name);

/// True for CON, NUL, COM1 and the like, in any case and with any extension.
bool IsDeviceName(std::string_view name);

/// "C:\a\b" of the parts; "C:\" of none.
std::string PathText(char drive, const std::vector<std::string>& parts);

}  // namespace zent
