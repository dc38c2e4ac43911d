#include "app/windows/LibrarySearch.h"

#include <windows.h>

#include "platform/win32/SystemFunctions.h"

namespace zent {
namespace {

constexpr DWORD kSystemFolderOnly = 0x800;  // LOAD_LIBRARY_SEARCH_SYSTEM32

}  // namespace

void LimitLibrarySearch() {
  // Of 8, and of Vista and 7 with a later update.
  using SetDefault = BOOL WINAPI(DWORD);
  if (const auto set_default =
          FindSystemFunction<SetDefault>("kernel32", "SetDefaultDllDirectories")) {
    set_default(kSystemFolderOnly);
  }
  // Of XP with its first service pack: takes the current folder out of the search.
  using SetFolder = BOOL WINAPI(const char*);
  if (const auto set_folder = FindSystemFunction<SetFolder>("kernel32", "SetDllDirectoryA")) {
    set_folder("");
  }
}

}  // namespace zent
