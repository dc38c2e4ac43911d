#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "base/Status.h"

namespace zent {

/// What a read of a settings file gave.
struct SettingsText {
  /// The value, or the default. A list of names has a NUL behind each name.
  std::string text;
  /// Why the default was taken, when the file could not be read; ok when it was read, whether or
  /// not it holds the key.
  Status file;
};

/// Settings (INI) files, with the behaviour of GetPrivateProfileStringA and
/// WritePrivateProfileStringA: sections and keys match without regard to case and without the
/// blanks around them, the first of several counts, values lose the blanks at both ends and then
/// one pair of equal quotes. Texts are UTF-8; the file holds ANSI bytes, unless it starts with the
/// mark of another encoding. A file name without a folder lies in the Windows folder.
class SettingsFiles {
 public:
  virtual ~SettingsFiles() = default;

  /// The value of `key` in `section`, cut to `buffer_size` - 1 characters. Without `key` the names
  /// of the section's keys, without `section` those of all sections, each list cut to
  /// `buffer_size` - 2 characters. `default_text` loses its trailing blanks and its quotes.
  virtual SettingsText Read(std::string_view file, std::optional<std::string_view> section,
                            std::optional<std::string_view> key, std::string_view default_text,
                            std::size_t buffer_size) = 0;

  /// Sets `key` of `section`, adding key, section and file where they are missing. Without `value`
  /// the key is removed, without `key` the section. Every other line stays byte for byte.
  /// Errors: those of FileSystem; a read-only file is kPathFileAccess.
  virtual Status Write(std::string_view file, std::string_view section,
                       std::optional<std::string_view> key,
                       std::optional<std::string_view> value) = 0;
};

}  // namespace zent
