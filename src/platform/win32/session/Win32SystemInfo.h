#pragma once

#include "platform/SystemInfo.h"

namespace zent {

/// What Windows says of itself to this process.
class Win32SystemInfo : public SystemInfo {
 public:
  /// Systems after 8 name their true version only to programs whose manifest lists them.
  OsVersion Version() override;
  std::string WindowsFolder() override;
  /// As a program of this width sees it: a 32-bit one is led elsewhere by a 64-bit system.
  std::string SystemFolder() override;
  std::string TempFolder() override;
  /// Of this process; a name that holds "=" or does not fit the code page is not set.
  std::optional<std::string> EnvironmentVariable(std::string_view name) override;
  std::string ToAnsi(std::string_view text) override;
  std::string FromAnsi(std::string_view bytes) override;
};

}  // namespace zent
