#include "platform/win32/Win32Errors.h"

#include <windows.h>

#include "platform/SystemErrors.h"

namespace zent {

RuntimeError ErrorOfWin32(unsigned long code) {
  return ErrorOf(static_cast<SystemError>(static_cast<std::uint32_t>(code)));
}

RuntimeError LastError() { return ErrorOfWin32(GetLastError()); }

}  // namespace zent
