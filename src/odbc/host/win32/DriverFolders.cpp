#include "odbc/host/win32/DriverFolders.h"

#include <windows.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace zent::odbc {
namespace {

using AddFolder = void* WINAPI(const wchar_t*);
using SetDefault = BOOL WINAPI(DWORD);

constexpr DWORD kSystemFolder = 0x800;  // LOAD_LIBRARY_SEARCH_SYSTEM32
constexpr DWORD kAddedFolders = 0x400;  // LOAD_LIBRARY_SEARCH_USER_DIRS
constexpr const wchar_t* kDrivers = LR"(SOFTWARE\ODBC\ODBCINST.INI)";
constexpr DWORD kLongestKeyName = 256;  // characters, with the NUL

template <typename Function>
Function* FindInKernel(const char* name) {
  // Through void*: the compiler distrusts a cast from one type of function to another.
  return reinterpret_cast<Function*>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32"), name)));
}

/// The text that `call` fills a buffer with; for none it returns the size needed, with the NUL.
template <typename Call>
std::wstring FilledText(const Call& call) {
  std::wstring buffer(call(nullptr, 0), L'\0');
  call(buffer.data(), static_cast<DWORD>(buffer.size()));
  return {buffer.c_str()};
}

bool IsFullPath(const std::wstring& path) {
  return path.starts_with(LR"(\\)") || path.substr(1, 2) == LR"(:\)" || path.substr(1, 2) == L":/";
}

/// As the system spells it, without a backslash at its end but for a root's.
std::wstring FullFolder(const std::wstring& path) {
  std::wstring full = FilledText([&](wchar_t* buffer, DWORD size) {
    return GetFullPathNameW(path.c_str(), size, buffer, nullptr);
  });
  if (full.size() > 3 && full.back() == L'\\') full.pop_back();
  return full;
}

std::wstring FolderOf(const std::wstring& path) { return path.substr(0, path.rfind(L'\\') + 1); }

std::wstring ProgramFolder() {
  std::wstring path(0x8000, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return FullFolder(FolderOf(path));
}

std::vector<std::wstring> PathFolders() {
  const std::wstring path = FilledText(
      [](wchar_t* buffer, DWORD size) { return GetEnvironmentVariableW(L"PATH", buffer, size); });
  std::vector<std::wstring> folders;
  for (std::size_t at = 0; at < path.size();) {
    const std::size_t end =
        path.find(L';', at) == std::wstring::npos ? path.size() : path.find(L';', at);
    std::wstring folder = path.substr(at, end - at);
    std::erase(folder, L'"');
    folders.push_back(folder);
    at = end + 1;
  }
  return folders;
}

/// The text value "Driver" below the key of one driver, its variables expanded; empty without one.
std::wstring DriverFile(HKEY drivers, const wchar_t* name) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(drivers, name, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) return {};
  std::array<wchar_t, MAX_PATH + 1> text = {};  // the last stays NUL
  DWORD size = MAX_PATH * sizeof(wchar_t);
  DWORD type = REG_NONE;
  const LONG read =
      RegQueryValueExW(key, L"Driver", nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &size);
  RegCloseKey(key);
  if (read != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) return {};
  return FilledText([&](wchar_t* buffer, DWORD length) {
    return ExpandEnvironmentStringsW(text.data(), buffer, length);
  });
}

std::vector<std::wstring> InstalledFolders() {
  std::vector<std::wstring> folders;
  HKEY drivers = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kDrivers, 0, KEY_READ, &drivers) != ERROR_SUCCESS)
    return {};
  for (DWORD at = 0;; ++at) {
    std::array<wchar_t, kLongestKeyName> name = {};
    DWORD size = kLongestKeyName;
    if (RegEnumKeyExW(drivers, at, name.data(), &size, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
      break;
    }
    folders.push_back(FolderOf(DriverFile(drivers, name.data())));
  }
  RegCloseKey(drivers);
  return folders;
}

bool SameFolder(const std::wstring& a, const std::wstring& b) {
  return lstrcmpiW(a.c_str(), b.c_str()) == 0;
}

}  // namespace

void AllowDriverFolders() {
  auto* const add = FindInKernel<AddFolder>("AddDllDirectory");
  auto* const set_default = FindInKernel<SetDefault>("SetDefaultDllDirectories");
  if (add == nullptr || set_default == nullptr) return;
  const std::wstring program = ProgramFolder();
  const std::wstring current = FullFolder(L".");
  std::vector<std::wstring> folders = InstalledFolders();
  for (std::wstring& folder : PathFolders()) folders.push_back(std::move(folder));
  for (const std::wstring& folder : folders) {
    if (!IsFullPath(folder)) continue;
    const std::wstring full = FullFolder(folder);
    // What is no folder is refused by the call.
    if (!SameFolder(full, program) && !SameFolder(full, current)) add(full.c_str());
  }
  set_default(kSystemFolder | kAddedFolders);
}

}  // namespace zent::odbc
