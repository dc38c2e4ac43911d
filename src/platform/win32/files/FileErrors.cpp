#include "platform/win32/files/FileErrors.h"

#include <windows.h>

#include <algorithm>
#include <array>

#include "base/ErrorNumbers.h"
#include "platform/win32/Win32Errors.h"

namespace zent {
namespace {

// ERROR_BAD_DEV_TYPE is what Wine says of a server that it does not know.
constexpr std::array<DWORD, 9> kUnreachable = {
    ERROR_REM_NOT_LIST, ERROR_BAD_NETPATH,         ERROR_DEV_NOT_EXIST,
    ERROR_BAD_DEV_TYPE, ERROR_BAD_NET_NAME,        ERROR_NO_NET_OR_BAD_PATH,
    ERROR_NO_NETWORK,   ERROR_NETWORK_UNREACHABLE, ERROR_HOST_UNREACHABLE,
};

}  // namespace

RuntimeError LastFileError() {
  const DWORD code = GetLastError();
  const bool unreachable =
      std::find(kUnreachable.begin(), kUnreachable.end(), code) != kUnreachable.end();
  return unreachable ? StandardError(kPathNotFound) : ErrorOfWin32(code);
}

}  // namespace zent
