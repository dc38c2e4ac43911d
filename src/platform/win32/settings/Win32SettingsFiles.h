#pragma once

#include <string_view>

#include "platform/SettingsFiles.h"

namespace zent {

/// Settings files of Windows, read and written by the system itself.
///
/// Settled here, where the port leaves it open: what the ANSI code page lacks becomes "?", and a
/// text ends at its first NUL. A section, key or value of more than 32766 characters, which the
/// system would cut short or take for none, is never found and is kOutOfStringSpace in a write. A
/// removal creates no file. Which marks of other encodings count is up to the system: Windows knows
/// that of UTF-16 little-endian.
class Win32SettingsFiles : public SettingsFiles {
 public:
  SettingsText Read(std::string_view file, std::optional<std::string_view> section,
                    std::optional<std::string_view> key, std::string_view default_text,
                    std::size_t buffer_size) override;
  Status Write(std::string_view file, std::string_view section, std::optional<std::string_view> key,
               std::optional<std::string_view> value) override;
};

}  // namespace zent
