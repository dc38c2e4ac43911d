#include "platform/prefix/registry/PrefixSystemInfo.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/CaseFold.h"
#include "base/CodePage.h"

namespace zent {
namespace {

constexpr std::string_view kCurrentVersion = R"(Software\Microsoft\Windows\CurrentVersion)";
constexpr std::string_view kNtCurrentVersion = R"(Software\Microsoft\Windows NT\CurrentVersion)";
constexpr std::string_view kProfileList =
    R"(Software\Microsoft\Windows NT\CurrentVersion\ProfileList)";

struct EnvironmentPlace {
  KeyHandle root;
  std::string_view path;
};

/// Where variables are set, in the order of looking.
constexpr std::array kEnvironmentPlaces = {
    EnvironmentPlace{KeyHandle::CurrentUser, "Volatile Environment"},
    EnvironmentPlace{KeyHandle::CurrentUser, "Environment"},
    EnvironmentPlace{KeyHandle::LocalMachine,
                     R"(System\CurrentControlSet\Control\Session Manager\Environment)"},
};

struct ProvidedRow {
  std::string_view name;
  std::string_view path;
  std::string_view value;
  std::string_view otherwise;  ///< empty: the variable is not set without the value
};

/// Variables that the system sets itself, from values below HKEY_LOCAL_MACHINE.
constexpr std::array kProvided = {
    ProvidedRow{"ProgramData", kProfileList, "ProgramData", R"(C:\ProgramData)"},
    ProvidedRow{"ALLUSERSPROFILE", kProfileList, "ProgramData", R"(C:\ProgramData)"},
    ProvidedRow{"PUBLIC", kProfileList, "Public", R"(C:\users\Public)"},
    ProvidedRow{"ProgramFiles", kCurrentVersion, "ProgramFilesDir", {}},
    ProvidedRow{"ProgramFiles(x86)", kCurrentVersion, "ProgramFilesDir (x86)", {}},
    ProvidedRow{"ProgramW6432", kCurrentVersion, "ProgramFilesDir", {}},
    ProvidedRow{"CommonProgramFiles", kCurrentVersion, "CommonFilesDir", {}},
    ProvidedRow{"CommonProgramFiles(x86)", kCurrentVersion, "CommonFilesDir (x86)", {}},
    ProvidedRow{"CommonProgramW6432", kCurrentVersion, "CommonFilesDir", {}},
};

constexpr std::size_t kDeepestExpansion = 16;
/// Of one variable asked for, so that values naming each other many times come to an end.
constexpr int kMostLookups = 256;

bool IsFullPath(std::string_view path) {
  const auto is_letter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
  return path.size() >= 3 && is_letter(path[0]) && path[1] == ':' && path[2] == '\\';
}

std::string WithoutLastBackslash(std::string path) {
  if (!path.empty() && path.back() == '\\') path.pop_back();
  return path;
}

/// The whole of `digits` as a number.
std::optional<std::uint32_t> ParseNumber(std::string_view digits) {
  std::uint32_t number = 0;
  const char* const end = digits.data() + digits.size();
  const std::from_chars_result read = std::from_chars(digits.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

}  // namespace

OsVersion PrefixSystemInfo::Version() {
  constexpr OsVersion kUnknown = {kPlatformNt, 5, 1};
  const std::string text =
      ReadText(KeyHandle::LocalMachine, kNtCurrentVersion, "CurrentVersion").value_or("");
  const std::size_t point = text.find('.');
  if (point == std::string::npos) return kUnknown;
  const std::optional<std::uint32_t> major = ParseNumber(std::string_view(text).substr(0, point));
  const std::optional<std::uint32_t> minor = ParseNumber(std::string_view(text).substr(point + 1));
  if (!major || !minor) return kUnknown;
  return {kPlatformNt, *major, *minor};
}

std::string PrefixSystemInfo::WindowsFolder() {
  const std::optional<std::string> folder =
      ReadText(KeyHandle::LocalMachine, kNtCurrentVersion, "SystemRoot");
  if (!folder || !IsFullPath(*folder)) return R"(C:\windows)";
  return WithoutLastBackslash(*folder);
}

std::string PrefixSystemInfo::SystemFolder() { return WindowsFolder() + R"(\system32)"; }

std::string PrefixSystemInfo::TempFolder() {
  for (const std::string_view name : {"TMP", "TEMP", "USERPROFILE"}) {
    const std::optional<std::string> folder = EnvironmentVariable(name);
    if (folder && !folder->empty()) return WithoutLastBackslash(*folder);
  }
  return WindowsFolder();
}

std::optional<std::string> PrefixSystemInfo::EnvironmentVariable(std::string_view name) {
  if (expanding_.empty()) lookups_left_ = kMostLookups;
  if (name.empty() || expanding_.size() >= kDeepestExpansion || --lookups_left_ < 0) {
    return std::nullopt;
  }
  const std::string folded = FoldName(name);
  std::size_t place = 0;
  for (const Expansion& expansion : expanding_) {
    if (expansion.name == folded) place = expansion.place + 1;
  }
  for (; place < kEnvironmentPlaces.size(); ++place) {
    const EnvironmentPlace& looked_in = kEnvironmentPlaces[place];
    expanding_.push_back({folded, place});
    std::optional<std::string> text = ReadText(looked_in.root, looked_in.path, name);
    expanding_.pop_back();
    if (text) return text;
  }
  if (place > kEnvironmentPlaces.size()) return std::nullopt;
  expanding_.push_back({folded, place});
  std::optional<std::string> text = ProvidedVariable(folded);
  expanding_.pop_back();
  return text;
}

std::string PrefixSystemInfo::ToAnsi(std::string_view text) { return zent::ToAnsi(text); }

std::string PrefixSystemInfo::FromAnsi(std::string_view bytes) { return zent::FromAnsi(bytes); }

std::optional<std::string> PrefixSystemInfo::ProvidedVariable(std::string_view name) {
  if (SameName(name, "SystemRoot") || SameName(name, "windir")) return WindowsFolder();
  if (SameName(name, "SystemDrive")) return WindowsFolder().substr(0, 2);
  const auto* const row =
      std::find_if(kProvided.begin(), kProvided.end(),
                   [name](const ProvidedRow& provided) { return SameName(provided.name, name); });
  if (row == kProvided.end()) return std::nullopt;
  std::optional<std::string> text = ReadText(KeyHandle::LocalMachine, row->path, row->value);
  if (!text && !row->otherwise.empty()) return std::string(row->otherwise);
  return text;
}

std::optional<std::string> PrefixSystemInfo::ReadText(KeyHandle root, std::string_view path,
                                                      std::string_view name) {
  const Result<KeyHandle> key = registry_.OpenKey(root, path);
  if (!key.ok()) return std::nullopt;
  const Result<RegistryValue> value = registry_.QueryValue(key.value(), name);
  // A key that was only opened has nothing to store.
  static_cast<void>(registry_.CloseKey(key.value()));
  if (!value.ok()) return std::nullopt;
  const std::uint32_t type = value.value().type;
  if (type != kRegSz && type != kRegExpandSz) return std::nullopt;
  const std::string& data = value.value().data;
  const std::string text = data.substr(0, data.find('\0'));
  return type == kRegSz ? text : ExpandEnvironment(*this, text);
}

}  // namespace zent
