#include "ui/win32/ShutdownBlock.h"

#include "platform/win32/SystemFunctions.h"

namespace zent {

void ShutdownBlock::Set(bool on) {
  using Create = BOOL WINAPI(HWND, const wchar_t*);
  using Destroy = BOOL WINAPI(HWND);
  if (on) {
    // The system has no ANSI form of it.
    auto* const create = FindSystemFunction<Create>("user32.dll", "ShutdownBlockReasonCreate");
    if (create != nullptr) create(window_, L"The update is still running.");
    return;
  }
  auto* const destroy = FindSystemFunction<Destroy>("user32.dll", "ShutdownBlockReasonDestroy");
  if (destroy != nullptr) destroy(window_);
}

}  // namespace zent
