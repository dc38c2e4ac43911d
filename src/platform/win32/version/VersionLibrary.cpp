#include "platform/win32/version/VersionLibrary.h"

#include <string>

#include "base/ErrorNumbers.h"
#include "platform/win32/Win32Errors.h"

namespace zent {
namespace {

Result<std::string> LibraryPath() {
  std::string folder(MAX_PATH, '\0');
  const UINT length = GetSystemDirectoryA(folder.data(), static_cast<UINT>(folder.size()));
  if (length == 0) return LastError();
  if (length >= folder.size()) return StandardError(kPathNotFound);
  folder.resize(length);
  return folder + R"(\version.dll)";
}

/// Finds one call of `library`; false when it has none of that name.
template <typename Function>
bool Find(HMODULE library, const char* name, Function*& function) {
  // Through void*: the compiler distrusts a cast from one type of function to another.
  function = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library, name)));
  return function != nullptr;
}

}  // namespace

Result<VersionLibrary> LoadVersionLibrary() {
  const Result<std::string> path = LibraryPath();
  if (!path.ok()) return path.error();
  const HMODULE library = LoadLibraryA(path.value().c_str());
  if (library == nullptr) return LastError();
  VersionLibrary calls;
  if (!Find(library, "GetFileVersionInfoSizeA", calls.size_of) ||
      !Find(library, "GetFileVersionInfoA", calls.read) ||
      !Find(library, "VerQueryValueA", calls.query)) {
    return LastError();
  }
  return calls;
}

}  // namespace zent
