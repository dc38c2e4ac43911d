#include "platform/prefix/files/WindowsPath.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "base/Text.h"
#include "base/Utf.h"
#include "platform/SystemErrors.h"

namespace zent {
namespace {

constexpr std::string_view kVerbatimStart = R"(\\?\)";
constexpr std::string_view kDeviceStart = R"(\\.\)";

constexpr std::array<std::string_view, 6> kDevices = {"CON", "PRN",    "AUX",
                                                      "NUL", "CONIN$", "CONOUT$"};
/// Ports are numbered 1 to 9; the superscript digits are taken for 1 to 3.
constexpr std::array<std::string_view, 2> kPorts = {"COM", "LPT"};
constexpr std::array<std::string_view, 3> kSuperscripts = {"\xC2\xB9", "\xC2\xB2", "\xC2\xB3"};

bool IsPortNumber(std::string_view text) {
  if (text.size() == 1) return text[0] >= '1' && text[0] <= '9';
  return std::find(kSuperscripts.begin(), kSuperscripts.end(), text) != kSuperscripts.end();
}

/// The part of a name that tells whether it is a device: up to its first dot or colon.
std::string_view DeviceStem(std::string_view name) {
  const std::string_view stem = name.substr(0, name.find_first_of(".:"));
  return stem.substr(0, stem.find_last_not_of(' ') + 1);
}

bool HasDrive(std::string_view path) { return path.size() >= 2 && path[1] == ':'; }

bool IsShareOrDevice(std::string_view path) { return path.starts_with(R"(\\)"); }

/// A full path on its way: what ".." cannot climb above, and the names below it.
struct FullForm {
  std::string root;
  std::vector<std::string> parts;
  bool trailing_backslash = false;
};

void AppendParts(std::string_view text, FullForm& full) {
  full.trailing_backslash = text.empty() || text.back() == '\\';
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\\', at), text.size());
    const bool last = end == text.size();
    std::string_view part = text.substr(at, end - at);
    at = end + 1;
    if (part.empty() || part == ".") continue;
    if (part == "..") {
      if (!full.parts.empty()) full.parts.pop_back();
      continue;
    }
    if (last) {
      part = part.substr(0, part.find_last_not_of(". ") + 1);
      full.trailing_backslash = part.empty();
    } else if (part.back() == '.') {
      part.remove_suffix(1);
    }
    if (!part.empty()) full.parts.emplace_back(part);
  }
}

/// The root of a share, "\\server\share\", or of a device, "\\.\C:\", at the start of `path`.
std::string_view ShareRoot(std::string_view path) {
  const bool device = path.starts_with(kVerbatimStart) || path.starts_with(kDeviceStart);
  std::size_t at = device ? kDeviceStart.size() : path.find('\\', 2);
  if (!device && at != std::string_view::npos) ++at;
  if (at >= path.size()) return path;
  const std::size_t end = path.find('\\', at);
  return end == std::string_view::npos ? path : path.substr(0, end + 1);
}

FullForm FullFormOf(std::string_view path, std::string_view current_folder) {
  FullForm full;
  if (IsShareOrDevice(path)) {
    full.root = ShareRoot(path);
    AppendParts(path.substr(full.root.size()), full);
    return full;
  }
  full.root = std::string(current_folder.substr(0, 2)) + '\\';
  const bool same_drive =
      !HasDrive(path) || EqualsIgnoringCase(path.substr(0, 2), current_folder.substr(0, 2));
  if (HasDrive(path)) {
    if (!same_drive || path.substr(2, 1) == "\\") full.root = std::string(path.substr(0, 2)) + '\\';
    path.remove_prefix(2);
  }
  if (same_drive && !path.starts_with('\\')) AppendParts(current_folder.substr(2), full);
  if (path.empty()) full.trailing_backslash = true;
  if (!path.empty()) AppendParts(path, full);
  return full;
}

std::string TextOf(const FullForm& full) {
  std::string text = full.root;
  for (const std::string& part : full.parts) text += part + '\\';
  if (!full.parts.empty() && !full.trailing_backslash) text.pop_back();
  return text;
}

/// The device that the last part of `path` names, as spelled there.
std::optional<std::string> DeviceOf(std::string_view path) {
  if (IsShareOrDevice(path)) return std::nullopt;
  std::string_view last = path.substr(path.rfind('\\') + 1);
  if (last.size() == path.size() && HasDrive(path)) last.remove_prefix(2);
  if (!IsDeviceName(last)) return std::nullopt;
  return std::string(DeviceStem(last));
}

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

/// Takes "C:\a\b" apart literally. An empty part survives for the caller to judge.
std::optional<WindowsPath> Split(std::string_view text) {
  if (text.size() < 3 || !IsLetter(text[0]) || !HasDrive(text) || text[2] != '\\') {
    return std::nullopt;
  }
  WindowsPath path;
  path.drive = ToLower(text.substr(0, 1))[0];
  path.drive = static_cast<char>(path.drive - 'a' + 'A');
  path.names_a_folder = text.back() == '\\';
  text.remove_prefix(3);
  if (path.names_a_folder && !text.empty()) text.remove_suffix(1);
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\\'), text.size());
    path.parts.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return path;
}

bool HoldsOnlyNameCharacters(std::string_view part, bool wildcards) {
  const std::string_view refused = wildcards ? "|/" : R"(<>"|*?/)";
  const bool control = std::any_of(part.begin(), part.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x20; });
  return !control && part.find_first_of(refused) == std::string_view::npos && IsUtf8(part);
}

Status CheckParts(const WindowsPath& path, bool wildcards) {
  for (std::size_t i = 0; i < path.parts.size(); ++i) {
    const std::string& part = path.parts[i];
    const bool last = i + 1 == path.parts.size();
    if (!HoldsOnlyNameCharacters(part, wildcards && last)) return StandardError(kBadFileName);
    // No folder has such a name, which is how a part "..." reads once it has lost its last dot.
    const bool no_name =
        part.empty() || part == "." || part == ".." || part.find(':') != std::string::npos;
    if (no_name || (last && (IsDeviceName(part) || part.back() == '.' || part.back() == ' '))) {
      return StandardError(last ? kBadFileName : kPathNotFound);
    }
  }
  return {};
}

Result<WindowsPath> Parse(std::string_view path, std::string_view current_folder, bool wildcards) {
  std::string text(path);
  if (!path.starts_with(kVerbatimStart)) {
    const Result<std::string> full = FullWindowsPath(path, current_folder);
    if (!full.ok()) return full.error();
    text = full.value();
  }
  if (text.starts_with(kDeviceStart) && IsDeviceName(text.substr(kDeviceStart.size()))) {
    return StandardError(kBadFileName);
  }
  if (text.starts_with(kVerbatimStart) || text.starts_with(kDeviceStart)) {
    text.erase(0, kDeviceStart.size());
  }
  std::optional<WindowsPath> split = Split(text);
  if (!split) return StandardError(kPathNotFound);
  if (const Status checked = CheckParts(*split, wildcards); !checked.ok()) return checked.error();
  return *std::move(split);
}

}  // namespace

Result<std::string> FullWindowsPath(std::string_view path, std::string_view current_folder) {
  if (TrimBlanks(path).empty()) return StandardError(kPathNotFound);
  std::string text(path);
  std::replace(text.begin(), text.end(), '/', '\\');
  if (const std::optional<std::string> device = DeviceOf(text)) {
    return std::string(kDeviceStart) + *device;
  }
  std::string full = TextOf(FullFormOf(text, current_folder));
  if (!full.starts_with(kVerbatimStart) && CountCharacters(full) > kMaxPathCharacters) {
    return ErrorOf(SystemError::FileNameTooLong);
  }
  return full;
}

Result<WindowsPath> ParseWindowsPath(std::string_view path, std::string_view current_folder) {
  return Parse(path, current_folder, false);
}

Result<SearchPath> ParseSearchPath(std::string_view path, std::string_view current_folder) {
  Result<WindowsPath> parsed = Parse(path, current_folder, true);
  if (!parsed.ok()) return parsed.error();
  SearchPath search{.folder = std::move(parsed.value()), .pattern = {}};
  if (search.folder.names_a_folder || search.folder.parts.empty()) return search;
  search.pattern = std::move(search.folder.parts.back());
  search.folder.parts.pop_back();
  // "*." asks for names without an extension: its dot, lost in the full form, means something.
  if (search.pattern.back() == '*' && path.back() == '.') search.pattern += '.';
  return search;
}

bool IsWindowsName(std::string_view name) {
  if (name.empty() || name.back() == '.' || name.back() == ' ') return false;
  return HoldsOnlyNameCharacters(name, false) && name.find_first_of(R"(\:)") == name.npos &&
         !IsDeviceName(name);
}

bool IsDeviceName(std::string_view name) {
  const std::string_view stem = DeviceStem(name);
  for (const std::string_view device : kDevices) {
    if (EqualsIgnoringCase(stem, device)) return true;
  }
  return std::any_of(kPorts.begin(), kPorts.end(), [&](std::string_view port) {
    return EqualsIgnoringCase(stem.substr(0, port.size()), port) &&
           IsPortNumber(stem.substr(std::min(port.size(), stem.size())));
  });
}

std::string PathText(char drive, const std::vector<std::string>& parts) {
  std::string text = {drive, ':'};
  if (parts.empty()) return text + '\\';
  for (const std::string& part : parts) text += '\\' + part;
  return text;
}

}  // namespace zent
