#include "ui/win32/PasswordTimer.h"

namespace zent {
namespace {

constexpr UINT kDelay = 30;  // milliseconds

bool IsOfThisProcess(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  return process == GetCurrentProcessId();
}

void CALLBACK MaskPassword(HWND, UINT, UINT_PTR id, DWORD) noexcept {
  KillTimer(nullptr, id);
  const HWND box = FindWindowA("#32770", "Enter Password");
  // Another program may have such a box too: what is typed there is no business of this one.
  if (box == nullptr || !IsOfThisProcess(box)) return;
  const HWND edit = FindWindowExA(box, nullptr, "Edit", nullptr);
  if (edit == nullptr) return;
  SendMessageA(edit, EM_SETPASSWORDCHAR, '*', 0);
  InvalidateRect(edit, nullptr, TRUE);
}

}  // namespace

PasswordTimer::PasswordTimer() : id_(SetTimer(nullptr, 0, kDelay, &MaskPassword)) {}

PasswordTimer::~PasswordTimer() { KillTimer(nullptr, id_); }

}  // namespace zent
