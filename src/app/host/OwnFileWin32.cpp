#include <io.h>
#include <windows.h>

#include <filesystem>

#include "app/host/OwnFile.h"

namespace zent {

OwnFile CreateOwnFile(const std::string& path) {
  const std::filesystem::path wide = std::u8string(path.begin(), path.end());
  OwnFile file(_wfopen(wide.c_str(), L"wb"));
  if (file == nullptr) return file;
  // The oldest runtimes know no letter for it in the mode.
  auto* const handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file.get())));
  SetHandleInformation(handle, HANDLE_FLAG_INHERIT, 0);
  return file;
}

}  // namespace zent
