#include "ui/win32/Dpi.h"

#include "platform/win32/SystemFunctions.h"

namespace zent {
namespace {

/// The system's numbers for "by screen", from the best on.
constexpr INT_PTR kByScreen[] = {-4, -3};

}  // namespace

void DrawInScreenPixels() {
  using SetContext = HANDLE WINAPI(HANDLE);
  using SetAware = BOOL WINAPI();
  if (auto* const set_context =
          FindSystemFunction<SetContext>("user32.dll", "SetThreadDpiAwarenessContext")) {
    for (const INT_PTR context : kByScreen) {
      if (set_context(reinterpret_cast<HANDLE>(context)) != nullptr) return;
    }
  }
  if (auto* const set_aware = FindSystemFunction<SetAware>("user32.dll", "SetProcessDPIAware")) {
    set_aware();
  }
}

int SystemDpi() {
  const HDC screen = GetDC(nullptr);
  if (screen == nullptr) return kDesignDpi;
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return dpi > 0 ? dpi : kDesignDpi;
}

int DpiOf(HWND window) {
  using GetDpi = UINT WINAPI(HWND);
  auto* const get_dpi = FindSystemFunction<GetDpi>("user32.dll", "GetDpiForWindow");
  const int dpi = get_dpi != nullptr ? static_cast<int>(get_dpi(window)) : 0;
  return dpi > 0 ? dpi : SystemDpi();
}

SIZE WindowSizeFor(HWND window, SIZE client, int dpi) {
  using Adjust = BOOL WINAPI(RECT*, DWORD, BOOL, DWORD, UINT);
  RECT frame{0, 0, client.cx, client.cy};
  const auto style = static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE));
  const auto extended = static_cast<DWORD>(GetWindowLongA(window, GWL_EXSTYLE));
  auto* const adjust = FindSystemFunction<Adjust>("user32.dll", "AdjustWindowRectExForDpi");
  if (adjust == nullptr ||
      adjust(&frame, style, FALSE, extended, static_cast<UINT>(dpi)) == FALSE) {
    AdjustWindowRectEx(&frame, style, FALSE, extended);
  }
  return {frame.right - frame.left, frame.bottom - frame.top};
}

}  // namespace zent
