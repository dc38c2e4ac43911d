#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/Status.h"

namespace zent {

/// The version information of one program file, as it was when the file was opened.
///
/// A value is asked for by its path (VerQueryValue): "\VarFileInfo\Translation" and
/// "\StringFileInfo\040904B0\FileVersion" for the values, "\" for the fixed part. Names match
/// without regard to case; of two blocks of one name the first counts, also when only the second
/// one holds the value.
class VersionInfo {
 public:
  virtual ~VersionInfo() = default;

  /// The bytes of a binary value; nothing when there is no such block. A block without data gives
  /// no bytes.
  virtual std::optional<std::string> QueryBytes(std::string_view path) const = 0;

  /// A text up to its first NUL; nothing when there is no such block. A character outside the ANSI
  /// code page reads "?".
  virtual std::optional<std::string> QueryText(std::string_view path) const = 0;
};

/// The version resources of the machine's program files (GetFileVersionInfo).
class VersionResources {
 public:
  virtual ~VersionResources() = default;

  /// Reads the version resource (type 16, number 1) of a program or library; of several languages
  /// the one that the system prefers. Errors: those of FileSystem::OpenForReading, and
  /// kInvalidFileFormat for a file that is no program, has no such resource or is damaged.
  virtual Result<std::unique_ptr<VersionInfo>> Open(std::string_view path) const = 0;
};

}  // namespace zent
