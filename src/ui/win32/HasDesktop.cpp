#include <windows.h>

#include "ui/win32/Win32UpdateWindow.h"

namespace zent {
namespace {

/// A service runs where nobody sees its windows, nor answers its questions.
bool IsSeen() {
  USEROBJECTFLAGS flags{};
  const HWINSTA station = GetProcessWindowStation();
  if (GetUserObjectInformationA(station, UOI_FLAGS, &flags, sizeof flags, nullptr) == FALSE) {
    return false;
  }
  return (flags.dwFlags & WSF_VISIBLE) != 0;
}

}  // namespace

bool HasDesktop() {
  if (!IsSeen()) return false;
  const HWND probe = CreateWindowExA(0, "Static", "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                     GetModuleHandleA(nullptr), nullptr);
  if (probe == nullptr) return false;
  DestroyWindow(probe);
  return true;
}

}  // namespace zent
