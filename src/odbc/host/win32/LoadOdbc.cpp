#include "odbc/LoadOdbc.h"

#include <string>

#include "odbc/OdbcErrors.h"
#include "odbc/host/win32/DriverFolders.h"

namespace zent::odbc {
namespace {

RuntimeError NotThere(const std::string& reason) {
  return EngineError(kNoDriverManager,
                     "Servers cannot be reached: Windows has no odbc32.dll (" + reason + ")");
}

/// The full path in the system's own folder: by its name alone a file of that name beside the
/// program would be run, in a package from anywhere.
std::wstring LibraryPath() {
  std::wstring folder(MAX_PATH, L'\0');
  const UINT length = GetSystemDirectoryW(folder.data(), static_cast<UINT>(folder.size()));
  if (length == 0 || length >= folder.size()) return {};
  folder.resize(length);
  return folder + LR"(\odbc32.dll)";
}

}  // namespace

Result<std::unique_ptr<OdbcCalls>> LoadOdbc() {
  AllowDriverFolders();
  const std::wstring path = LibraryPath();
  const HMODULE library = path.empty() ? nullptr : LoadLibraryW(path.c_str());
  if (library == nullptr) return NotThere("error " + std::to_string(GetLastError()));
  auto calls = std::make_unique<OdbcCalls>();
  const auto find = [library](const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(library, name));
  };
  const char* const missing = FindCalls(find, *calls);
  if (missing != nullptr) return NotThere(std::string(missing) + " is missing");
  return calls;
}

}  // namespace zent::odbc
