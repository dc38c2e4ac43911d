#pragma once

#include <map>
#include <string>

#include "base/CodePage.h"
#include "base/Text.h"
#include "base/Utf.h"
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
  /// What bytes of the machine's code page stand for where it is not 1252.
  std::map<char, std::string> letters;

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

  std::string ToAnsi(std::string_view text) override {
    if (letters.empty()) return zent::ToAnsi(text);
    std::string bytes;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t start = at;
      NextCodePoint(text, at);
      bytes += AnsiLetter(text.substr(start, at - start));
    }
    return bytes;
  }
  std::string FromAnsi(std::string_view bytes) override {
    if (letters.empty()) return zent::FromAnsi(bytes);
    std::string text;
    for (const char byte : bytes) {
      const auto found = letters.find(byte);
      text += found == letters.end() ? zent::FromAnsi({&byte, 1}) : found->second;
    }
    return text;
  }

 private:
  std::string AnsiLetter(std::string_view letter) const {
    for (const auto& [byte, text] : letters) {
      if (text == letter) return {byte};
    }
    return zent::ToAnsi(letter);
  }
};

}  // namespace zent::testing
