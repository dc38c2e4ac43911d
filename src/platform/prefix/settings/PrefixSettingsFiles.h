#pragma once

#include <string>
#include <string_view>

#include "platform/FileSystem.h"
#include "platform/SettingsFiles.h"
#include "platform/SystemInfo.h"

namespace zent {

/// Settings files of the machine, read and written through its FileSystem.
///
/// Settled here, where the port leaves it open: all texts pass through the ANSI code page, whatever
/// the encoding of the file, and end at a NUL; a write that changes no byte does not touch the
/// file, so it succeeds on a read-only one; a removal creates no file. A file above 1 GB is
/// kOutOfStringSpace.
class PrefixSettingsFiles : public SettingsFiles {
 public:
  /// Both must outlive this.
  PrefixSettingsFiles(FileSystem& files, SystemInfo& system) : files_(files), system_(system) {}

  SettingsText Read(std::string_view file, std::optional<std::string_view> section,
                    std::optional<std::string_view> key, std::string_view default_text,
                    std::size_t buffer_size) override;
  Status Write(std::string_view file, std::string_view section, std::optional<std::string_view> key,
               std::optional<std::string_view> value) override;

 private:
  /// `file` itself or, without a folder, its path in the Windows folder.
  std::string PathOf(std::string_view file);

  FileSystem& files_;
  SystemInfo& system_;
};

}  // namespace zent
