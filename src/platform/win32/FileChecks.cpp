#include "platform/win32/FileChecks.h"

#include <windows.h>

#include "platform/win32/UniqueHandle.h"
#include "platform/win32/Win32Errors.h"

namespace zent {
namespace {

bool HasMissingDrive(const std::string& path) {
  if (path.size() < 2 || path[1] != ':') return false;
  const std::string root = path.substr(0, 2) + '\\';
  return GetFileAttributesA(root.c_str()) == INVALID_FILE_ATTRIBUTES;
}

/// The reason why `path` cannot be opened. Wine says of a file in the root of a missing drive that
/// the file is missing.
RuntimeError ReasonFor(const std::string& path) {
  const DWORD code = GetLastError();
  const bool no_drive = code == ERROR_FILE_NOT_FOUND && HasMissingDrive(path);
  return ErrorOfWin32(no_drive ? ERROR_PATH_NOT_FOUND : code);
}

}  // namespace

Status CheckFile(const std::string& ansi_path, std::uint32_t access) {
  const DWORD attributes = GetFileAttributesA(ansi_path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return ReasonFor(ansi_path);
  // Asked for, because not every system refuses it by itself: Wine run by root does not.
  const bool is_read_only = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
  if (is_read_only && access != GENERIC_READ) return StandardError(kPathFileAccess);

  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const UniqueHandle file(
      CreateFileA(ansi_path.c_str(), access, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file.ok()) return LastError();
  return {};
}

}  // namespace zent
