#include "platform/win32/files/FilePath.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "platform/SystemErrors.h"
#include "platform/win32/AnsiText.h"
#include "platform/win32/Win32Errors.h"

namespace zent {
namespace {

constexpr std::size_t kMaxPathCharacters = MAX_PATH - 1;  // the last is the NUL
constexpr std::size_t kMaxSystemCharacters = 32767;  // of any text that the system calls a path
constexpr std::string_view kLiteralStart = R"(\\?\)";
constexpr std::string_view kDeviceStart = R"(\\.\)";

bool HasDrive(std::string_view path) { return path.size() >= 2 && path[1] == ':'; }

bool IsOnDrive(std::string_view path) { return HasDrive(path) && path.substr(2, 1) == "\\"; }

bool IsShareOrDevice(std::string_view path) { return path.starts_with(R"(\\)"); }

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20; }

std::string WithBackslash(std::string_view folder) {
  std::string text(folder);
  if (!text.ends_with('\\')) text += '\\';
  return text;
}

/// "C:" or "\\server\share": what a path that begins with one backslash counts from.
std::string_view RootOf(std::string_view folder) {
  if (!IsShareOrDevice(folder)) return folder.substr(0, 2);
  const std::size_t share = folder.find('\\', 2);
  return share == std::string_view::npos ? folder : folder.substr(0, folder.find('\\', share + 1));
}

/// `path` with drive or share, its "." and ".." still in it.
std::string Anchored(std::string_view path, std::string_view current_folder) {
  if (IsShareOrDevice(path) || IsOnDrive(path)) return std::string(path);
  if (HasDrive(path)) {
    const std::string_view drive = path.substr(0, 2);
    path.remove_prefix(2);
    const bool here = EqualsIgnoringCase(drive, current_folder.substr(0, 2));
    return WithBackslash(here ? current_folder : drive).append(path);
  }
  if (path.starts_with('\\')) return std::string(RootOf(current_folder)).append(path);
  return WithBackslash(current_folder).append(path);
}

/// What the system makes of a path that depends on no current folder.
Result<std::string> SystemFullPath(const std::string& anchored) {
  const Result<std::string> ansi = AnsiOf(anchored);
  if (!ansi.ok()) return ansi.error();
  if (ansi.value().size() > kMaxSystemCharacters) return ErrorOf(SystemError::FileNameTooLong);
  std::string full(MAX_PATH, '\0');
  for (;;) {
    const DWORD length = GetFullPathNameA(ansi.value().c_str(), static_cast<DWORD>(full.size()),
                                          full.data(), nullptr);
    if (length == 0) return LastError();
    const bool fits = length < full.size();
    full.resize(length);
    if (fits) return TextOfAnsi(full);
  }
}

/// The drive or device path behind "\\?\" or "\\.\", or the full path as it is.
Result<std::string> PlainPath(std::string_view path, std::string_view current_folder) {
  if (path.starts_with(kLiteralStart)) {
    const std::string_view plain = path.substr(kLiteralStart.size());
    if (!IsOnDrive(plain)) return StandardError(kPathNotFound);
    return std::string(plain);
  }
  Result<std::string> full = FullPathOf(path, current_folder);
  if (!full.ok() || !full.value().starts_with(kDeviceStart)) return full;
  full.value().erase(0, kDeviceStart.size());
  if (!IsOnDrive(full.value())) return StandardError(kBadFileName);
  return full;
}

/// Refuses what the system would take for something else than a name.
Status CheckNames(std::string_view path) {
  // A "|" and a control are refused by the system in a name, but not in a pattern.
  if (path.find('|') != std::string_view::npos ||
      std::any_of(path.begin(), path.end(), IsControl)) {
    return StandardError(kBadFileName);
  }
  const std::size_t colon = path.find(':', HasDrive(path) ? 2 : 0);
  if (colon == std::string_view::npos) return {};
  const bool in_last_part = path.find('\\', colon) == std::string_view::npos;
  const bool bad_sign = path.find_first_of(R"(<>"*?)") != std::string_view::npos;
  return StandardError(in_last_part || bad_sign ? kBadFileName : kPathNotFound);
}

/// A drive that is missing is told by Wine as a missing file.
Status CheckDrive(std::string_view path) {
  if (!HasDrive(path)) return {};
  const std::string root = {path[0], ':', '\\'};
  if (GetDriveTypeA(root.c_str()) != DRIVE_NO_ROOT_DIR) return {};
  return StandardError(kPathNotFound);
}

}  // namespace

std::string_view FilePath::folder() const {
  return std::string_view(text).substr(0, text.rfind('\\') + 1);
}

std::string_view FilePath::name() const {
  return std::string_view(text).substr(text.rfind('\\') + 1);
}

Result<std::string> FullPathOf(std::string_view path, std::string_view current_folder) {
  if (TrimBlanks(path).empty()) return StandardError(kPathNotFound);
  // Wine takes a leading slash for a path of the host.
  std::string text(path);
  std::replace(text.begin(), text.end(), '/', '\\');
  Result<std::string> full = SystemFullPath(Anchored(text, current_folder));
  if (full.ok() && !full.value().starts_with(kLiteralStart) &&
      CountCharacters(full.value()) > kMaxPathCharacters) {
    return ErrorOf(SystemError::FileNameTooLong);
  }
  return full;
}

Result<FilePath> ParseFilePath(std::string_view path, std::string_view current_folder) {
  Result<std::string> plain = PlainPath(path, current_folder);
  if (!plain.ok()) return plain.error();
  FilePath parsed{.text = std::move(plain.value()), .ansi = {}};
  if (Status names = CheckNames(parsed.text); !names.ok()) return names.error();
  // The calls read the path once more. One that changes by that, such as "C:\a..\b", which would
  // become "C:\a.\b" and then "C:\a\b", leads to another place than the one that was asked for.
  const Result<std::string> again = SystemFullPath(parsed.text);
  if (!again.ok()) return again.error();
  if (again.value() != parsed.text) {
    return StandardError(path.starts_with(kLiteralStart) ? kBadFileName : kPathNotFound);
  }
  if (Status drive = CheckDrive(parsed.text); !drive.ok()) return drive.error();
  Result<std::string> ansi = AnsiOf(parsed.text);
  if (!ansi.ok()) return ansi.error();
  parsed.ansi = std::move(ansi.value());
  return parsed;
}

Result<FilePattern> ParseFilePattern(std::string_view path, std::string_view current_folder) {
  const Result<FilePath> whole = ParseFilePath(path, current_folder);
  if (!whole.ok()) return whole.error();
  FilePattern search{.folder = {}, .pattern = std::string(whole.value().name())};
  search.folder.text = whole.value().folder();
  Result<std::string> ansi = AnsiOf(search.folder.text);
  if (!ansi.ok()) return ansi.error();
  search.folder.ansi = std::move(ansi.value());
  // "*." asks for names without an extension: its dot, lost in the full form, means something.
  if (search.pattern.ends_with('*') && path.ends_with('.')) search.pattern += '.';
  return search;
}

bool IsReachableName(std::string_view name) {
  if (name.empty() || name.find_first_of(R"(\/:*?"<>|)") != std::string_view::npos) return false;
  if (std::any_of(name.begin(), name.end(), IsControl)) return false;
  const std::string path = R"(C:\)" + std::string(name);
  return SystemFullPath(path).value_or("") == path;
}

}  // namespace zent
