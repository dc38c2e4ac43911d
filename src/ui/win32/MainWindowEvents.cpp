// What the system tells the window.
#include <exception>

#include "ui/win32/Dpi.h"
#include "ui/win32/MainWindow.h"

namespace zent {
namespace {

constexpr UINT_PTR kShowTimer = 1;
constexpr LPARAM kCriticalEnd = 0x40000000;  ///< the session ends, whoever refuses

}  // namespace

LRESULT CALLBACK MainWindow::Procedure(HWND window, UINT message, WPARAM wparam,
                                       LPARAM lparam) noexcept {
  if (message == WM_NCCREATE) {
    auto* const self =
        static_cast<MainWindow*>(reinterpret_cast<CREATESTRUCTA*>(lparam)->lpCreateParams);
    SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    self->handle_ = window;
  }
  auto* const self = reinterpret_cast<MainWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  // Without a layout the window is only being made.
  if (self == nullptr || self->fonts_ == nullptr) {
    return DefWindowProcA(window, message, wparam, lparam);
  }
  try {
    return self->Handle(message, wparam, lparam);
  } catch (const std::exception& error) {
    self->actions_.defect_happened(error.what());
  } catch (...) {
    self->actions_.defect_happened("unknown");
  }
  return 0;
}

LRESULT MainWindow::Default(UINT message, WPARAM wparam, LPARAM lparam) const {
  return DefWindowProcA(handle_, message, wparam, lparam);
}

LRESULT MainWindow::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_COMMAND:
      return OnCommand(LOWORD(wparam), HIWORD(wparam));
    case WM_CLOSE:
      // A question that stands open is answered first, whoever closes.
      if (IsWindowEnabled(handle_) != FALSE) actions_.close_wanted();
      return 0;
    case WM_TIMER:
      if (wparam == kShowTimer) actions_.show_due();
      return 0;
    case WM_QUERYENDSESSION:
      // The step at work would be torn; a session that ends in any case tears it anyway.
      return !running_ || (lparam & kCriticalEnd) != 0 ? TRUE : FALSE;
    case DM_GETDEFID: {
      const int id = DefaultButton();
      return id == 0 ? 0 : MAKELRESULT(id, DC_HASDEFID);
    }
    case WM_NEXTDLGCTL:
      OnNextControl(wparam, LOWORD(lparam) != 0);
      return 0;
    case WM_CTLCOLORSTATIC:
      return OnControlColor(wparam, lparam);
    case WM_ACTIVATE:
      OnActivate(LOWORD(wparam) != WA_INACTIVE);
      return 0;
    case WM_SETFOCUS:
      SetFocus(focus_);
      return 0;
    default:
      return HandlePlace(message, wparam, lparam);
  }
}

LRESULT MainWindow::HandlePlace(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_SIZE:
      if (wparam != SIZE_MINIMIZED) Arrange();
      return 0;
    case WM_GETMINMAXINFO: {
      const SIZE smallest = WindowSizeFor(handle_, SmallestClient(sizes_), dpi_);
      reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize = {smallest.cx, smallest.cy};
      return 0;
    }
    case kDpiChanged:
      OnDpiChanged(LOWORD(wparam), *reinterpret_cast<const RECT*>(lparam));
      return 0;
    case WM_SETTINGCHANGE:
      if (wparam == SPI_SETNONCLIENTMETRICS) SetFonts(dpi_);
      return 0;
    case WM_SYSCOLORCHANGE:
      SendMessageA(ControlOf(Bar), message, wparam, lparam);
      return 0;
    default:
      return Default(message, wparam, lparam);
  }
}

LRESULT MainWindow::OnCommand(int id, int notification) {
  // Return comes as IDOK where no button has the focus and none is the default.
  if (id == IDOK) return 0;
  if (id == Log && notification == EN_SETFOCUS) MarkDefault();
  if (id < Install || id > Close) return 0;
  if (notification == BN_SETFOCUS || notification == BN_KILLFOCUS) MarkDefault();
  if (notification == BN_CLICKED) Click(id);
  return 0;
}

void MainWindow::Click(int id) {
  // Another program may press what the user cannot.
  if (IsWindowEnabled(handle_) == FALSE || !IsEnabled(id)) return;
  if (id == Install) return actions_.install_clicked();
  if (id == Continue) return actions_.continue_clicked();
  actions_.close_clicked();
}

LRESULT MainWindow::OnControlColor(WPARAM wparam, LPARAM lparam) {
  if (reinterpret_cast<HWND>(lparam) != log_->handle()) {
    return Default(WM_CTLCOLORSTATIC, wparam, lparam);
  }
  // A read-only box is grey by itself; this one is there to be read.
  const auto paper = reinterpret_cast<HDC>(wparam);
  SetTextColor(paper, GetSysColor(COLOR_WINDOWTEXT));
  SetBkColor(paper, GetSysColor(COLOR_WINDOW));
  return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
}

void MainWindow::OnNextControl(WPARAM wparam, bool is_control) {
  const HWND next = is_control ? reinterpret_cast<HWND>(wparam)
                               : GetNextDlgTabItem(handle_, GetFocus(), wparam != 0 ? TRUE : FALSE);
  if (next != nullptr) SetFocus(next);
}

void MainWindow::OnActivate(bool active) {
  const HWND focus = GetFocus();
  if (!active && focus != nullptr && IsChild(handle_, focus) != FALSE) focus_ = focus;
  if (active && IsIconic(handle_) == FALSE) SetFocus(focus_);
}

void MainWindow::OnDpiChanged(int dpi, const RECT& place) {
  SetFonts(dpi);
  SetWindowPos(handle_, nullptr, place.left, place.top, place.right - place.left,
               place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void MainWindow::StartShowTimer(std::chrono::milliseconds delay) {
  SetTimer(handle_, kShowTimer, static_cast<UINT>(delay.count()), nullptr);
}

void MainWindow::StopShowTimer() { KillTimer(handle_, kShowTimer); }

void MainWindow::Dispatch(MSG& message) {
  if (IsDialogMessageA(handle_, &message) != FALSE) return;
  TranslateMessage(&message);
  DispatchMessageA(&message);
}

}  // namespace zent
