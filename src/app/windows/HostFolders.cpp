#include "app/windows/HostFolders.h"

#include <windows.h>

#include "platform/win32/AnsiText.h"
#include "platform/win32/WideText.h"

namespace zent {
namespace {

constexpr DWORD kLongestPath = 32768;  // characters, with the NUL

std::wstring WithoutLastBackslash(std::wstring path) {
  const bool is_root = path.size() <= 3;
  if (!is_root && (path.back() == L'\\' || path.back() == L'/')) path.pop_back();
  return path;
}

}  // namespace

std::string ProgramFolder() {
  std::wstring path(kLongestPath, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), kLongestPath));
  return Utf8Of(WithoutLastBackslash(path.substr(0, path.rfind(L'\\') + 1)));
}

std::string FullFolder(const std::string& folder) {
  std::wstring path(kLongestPath, L'\0');
  const DWORD length = GetFullPathNameW(WideOf(folder).c_str(), kLongestPath, path.data(), nullptr);
  if (length == 0 || length >= kLongestPath) return folder;
  path.resize(length);
  return Utf8Of(WithoutLastBackslash(path));
}

bool IsFolder(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(WideOf(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::string AnsiFolder(const std::string& path) {
  if (AnsiOf(path).ok()) return path;
  std::wstring name(kLongestPath, L'\0');
  const DWORD length = GetShortPathNameW(WideOf(path).c_str(), name.data(), kLongestPath);
  if (length == 0 || length >= kLongestPath) return path;
  name.resize(length);
  return Utf8Of(name);
}

}  // namespace zent
