#include "platform/win32/session/Win32SystemInfo.h"

#include <windows.h>

#include "platform/win32/AnsiText.h"

namespace zent {
namespace {

/// The text that `call` fills a buffer with, asked anew for one that is too small. `call` takes
/// buffer and size, returns the length without the NUL, or the size needed with it; 0 on failure.
template <typename Call>
std::string FilledText(const Call& call) {
  std::string buffer(MAX_PATH, '\0');
  for (;;) {
    const DWORD length = call(buffer.data(), static_cast<DWORD>(buffer.size()));
    const bool fits = length < buffer.size();
    buffer.resize(length);
    if (fits) return buffer;
  }
}

std::string FolderText(std::string folder) {
  if (!folder.empty() && folder.back() == '\\') folder.pop_back();
  return TextOfAnsi(folder);
}

}  // namespace

OsVersion Win32SystemInfo::Version() {
  OSVERSIONINFOA version = {};
  version.dwOSVersionInfoSize = sizeof(version);
  static_assert(sizeof(version) == 148, "the ANSI record, without the later fields");
  if (GetVersionExA(&version) == FALSE) return {};
  return {version.dwPlatformId, version.dwMajorVersion, version.dwMinorVersion};
}

std::string Win32SystemInfo::WindowsFolder() {
  return FolderText(FilledText(GetWindowsDirectoryA));
}

std::string Win32SystemInfo::SystemFolder() { return FolderText(FilledText(GetSystemDirectoryA)); }

std::string Win32SystemInfo::TempFolder() {
  return FolderText(
      FilledText([](char* buffer, DWORD size) { return GetTempPathA(size, buffer); }));
}

std::optional<std::string> Win32SystemInfo::EnvironmentVariable(std::string_view name) {
  const Result<std::string> ansi = AnsiOf(name);
  // The system keeps the current folders of the drives in hidden variables, "=C:" for one.
  const bool hidden = name.find('=') != std::string_view::npos;
  if (!ansi.ok() || name.empty() || hidden) return std::nullopt;
  // A variable that is set to nothing fails like one that is not set, but for the error.
  SetLastError(ERROR_SUCCESS);
  const std::string value = FilledText([&](char* buffer, DWORD size) {
    return GetEnvironmentVariableA(ansi.value().c_str(), buffer, size);
  });
  if (value.empty() && GetLastError() != ERROR_SUCCESS) return std::nullopt;
  return TextOfAnsi(value);
}

std::string Win32SystemInfo::ToAnsi(std::string_view text) { return ShownAnsiOf(text); }

std::string Win32SystemInfo::FromAnsi(std::string_view bytes) { return TextOfAnsi(bytes); }

}  // namespace zent
