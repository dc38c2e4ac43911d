#pragma once

#include <windows.h>

#include "base/Status.h"

namespace zent {

/// The version calls of the system, from version.dll of its own folder. That library is not one of
/// those that Windows always takes from there: were it imported, a file of that name beside the
/// program, in a package from anywhere, would be run instead.
struct VersionLibrary {
  DWORD(WINAPI* size_of)(const char* path, DWORD* ignored) = nullptr;  ///< ...InfoSizeA
  BOOL(WINAPI* read)(const char* path, DWORD ignored, DWORD size, void* data) = nullptr;
  BOOL(WINAPI* query)(const void* data, const char* path, void** value, UINT* length) = nullptr;
};

/// Loads the library, which stays loaded. An error when the system lacks it or one of its calls.
Result<VersionLibrary> LoadVersionLibrary();

}  // namespace zent
