#include "platform/win32/session/Win32Shell.h"

// clang-format off
#include <windows.h>  // before the header that needs its types
#include <shellapi.h>
// clang-format on

#include "platform/WebAddress.h"
#include "platform/win32/AnsiText.h"
#include "platform/win32/UniqueHandle.h"
#include "platform/win32/Win32Errors.h"

namespace zent {
namespace {

constexpr INT_PTR kLastShellError = 32;  // what ShellExecute returns above it is a success
constexpr DWORD kTokenRights = TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY;
static_assert(kTokenRights == 40);

HWND WindowOf(WindowHandle window) {
  return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(window));
}

}  // namespace

Status Win32Shell::OpenAddress(std::string_view address) {
  if (!IsWebAddress(address)) return StandardError(kInvalidProcedureCall);
  const Result<std::string> ansi = AnsiOf(address);
  if (!ansi.ok()) return ansi.error();
  const auto result = reinterpret_cast<INT_PTR>(
      ShellExecuteA(nullptr, "Open", ansi.value().c_str(), nullptr, nullptr, SW_SHOWNORMAL));
  if (result > kLastShellError) return {};
  if (result == SE_ERR_NOASSOC) return StandardError(kDeviceUnavailable);
  return ErrorOfWin32(static_cast<DWORD>(result));
}

WindowHandle Win32Shell::FindWindowByTitle(std::string_view title) {
  const Result<std::string> ansi = AnsiOf(title);
  if (!ansi.ok()) return WindowHandle::None;
  const HWND window = FindWindowA(nullptr, ansi.value().c_str());
  return static_cast<WindowHandle>(reinterpret_cast<std::uintptr_t>(window));
}

Status Win32Shell::PostClose(WindowHandle window) {
  // No window would mean the messages of this program itself.
  if (window == WindowHandle::None) return StandardError(kInvalidProcedureCall);
  if (PostMessageA(WindowOf(window), WM_CLOSE, 0, 0) != FALSE) return {};
  switch (GetLastError()) {
    case ERROR_INVALID_WINDOW_HANDLE:
      return StandardError(kInvalidProcedureCall);
    case ERROR_ACCESS_DENIED:
      return StandardError(kPermissionDenied);
    default:
      return LastError();
  }
}

bool Win32Shell::AcquireShutdownPrivilege() {
  HANDLE opened = nullptr;
  if (OpenProcessToken(GetCurrentProcess(), kTokenRights, &opened) == FALSE) {
    return GetLastError() == ERROR_CALL_NOT_IMPLEMENTED;  // a system without rights
  }
  const UniqueHandle token(opened);
  TOKEN_PRIVILEGES wanted = {};
  wanted.PrivilegeCount = 1;
  wanted.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
  if (LookupPrivilegeValueA(nullptr, "SeShutdownPrivilege", &wanted.Privileges[0].Luid) == FALSE) {
    return false;
  }
  // Succeeds without effect for a right that the user does not hold, and says so by the error.
  return AdjustTokenPrivileges(token.get(), FALSE, &wanted, 0, nullptr, nullptr) != FALSE &&
         GetLastError() == ERROR_SUCCESS;
}

Status Win32Shell::EndSession(std::uint32_t action) {
  const std::uint32_t kind = action & ~kForce;
  if (kind != kShutDown && kind != kRestart && kind != kPowerOff) {
    return StandardError(kInvalidProcedureCall);
  }
  static_assert(kShutDown == EWX_SHUTDOWN && kRestart == EWX_REBOOT && kPowerOff == EWX_POWEROFF &&
                kForce == EWX_FORCEIFHUNG);
  if (ExitWindowsEx(action, 0) != FALSE) return {};
  if (GetLastError() == ERROR_PRIVILEGE_NOT_HELD) return StandardError(kPermissionDenied);
  return LastError();
}

}  // namespace zent
