#pragma once

#include <map>
#include <string>

#include "base/Text.h"
#include "platform/SystemInfo.h"

namespace zent::testing {

/// A system that says what the test sets: a Windows Vista on drive C unless told otherwise.
class FakeSystemInfo : public SystemInfo {
 public:
  OsVersion version{kPlatformNt, 6, 0};
  std::string windows_folder = R"(C:\windows)";
  std::string system_folder = R"(C:\windows\system32)";
  std::string temp_folder = R"(C:\windows\temp)";
  std::map<std::string, std::string> environment;  ///< by name, in any case

  OsVersion Version() override { return version; }
  std::string WindowsFolder() override { return windows_folder; }
  std::string SystemFolder() override { return system_folder; }
  std::string TempFolder() override { return temp_folder; }
  std::optional<std::string> EnvironmentVariable(std::string_view name) override {
    for (const auto& [known, value] : environment) {
      if (EqualsIgnoringCase(known, name)) return value;
    }
    return std::nullopt;
  }
};

}  // namespace zent::testing
