#include "ui/win32/Dialog.h"

#include <algorithm>

#include "platform/win32/SystemFunctions.h"
#include "ui/win32/AppIcon.h"
#include "ui/win32/Dpi.h"

namespace zent {
namespace {

/// A box without controls, menu, class and title of its own, as the system reads it.
struct EmptyTemplate {
  alignas(DWORD) DLGTEMPLATE box;
  WORD menu;
  WORD window_class;
  WORD title;
};

/// The system would scale controls by itself, which are placed here.
void PlaceOwnControls(HWND box) {
  constexpr UINT kNoScaling = 1;
  using Set = BOOL WINAPI(HWND, UINT, UINT);
  auto* const set = FindSystemFunction<Set>("user32.dll", "SetDialogDpiChangeBehavior");
  if (set != nullptr) set(box, kNoScaling, kNoScaling);
}

RECT WorkAreaOf(HWND window) {
  MONITORINFO info{};
  info.cbSize = sizeof info;
  GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &info);
  return info.rcWork;
}

/// Where something of size `size` begins that is to stand in the middle of `from` to `to`, and
/// within `low` to `high` as far as it can.
LONG MiddleOf(LONG from, LONG to, LONG size, LONG low, LONG high) {
  return std::max(low, std::min(from + (to - from - size) / 2, high - size));
}

}  // namespace

int Dialog::Show(HWND owner, const std::string& title, bool topmost) {
  owner_ = owner;
  title_ = title;
  topmost_ = topmost;
  EmptyTemplate empty{};
  empty.box.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFOREGROUND;
  const INT_PTR ended_by = DialogBoxIndirectParamA(GetModuleHandleA(nullptr), &empty.box, owner,
                                                   &Procedure, reinterpret_cast<LPARAM>(this));
  return ended_by > 0 ? static_cast<int>(ended_by) : IDCANCEL;
}

INT_PTR CALLBACK Dialog::Procedure(HWND box, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(box, GWLP_USERDATA, lparam);
    reinterpret_cast<Dialog*>(lparam)->handle_ = box;
  }
  auto* const self = reinterpret_cast<Dialog*>(GetWindowLongPtrA(box, GWLP_USERDATA));
  if (self == nullptr) return FALSE;
  try {
    return self->Handle(message, wparam, lparam);
  } catch (...) {
    // Out of memory: a box that cannot be shown or read is one that was given up.
    EndDialog(box, IDCANCEL);
    return TRUE;
  }
}

INT_PTR Dialog::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_INITDIALOG:
      Init();
      return FALSE;  // the focus has been set
    case WM_COMMAND:
      if (HIWORD(wparam) != BN_CLICKED) return FALSE;
      End(LOWORD(wparam));
      return TRUE;
    case kDpiChanged: {
      const RECT& place = *reinterpret_cast<const RECT*>(lparam);
      SetFonts(LOWORD(wparam));
      const SIZE size = WindowSizeFor(handle_, Arrange(), dpi_);
      SetWindowPos(handle_, nullptr, place.left, place.top, size.cx, size.cy,
                   SWP_NOZORDER | SWP_NOACTIVATE);
      return TRUE;
    }
    default:
      return FALSE;
  }
}

void Dialog::Init() {
  PlaceOwnControls(handle_);
  SendMessageA(handle_, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(AppIcon(IconSize::Small)));
  Fill();
  SetFonts(DpiOf(handle_));
  Center(WindowSizeFor(handle_, Arrange(), dpi_));
  // Last, so that whoever finds the box by its title finds it whole.
  SetWindowTextA(handle_, title_.c_str());
  SetFocus(FirstFocus());
}

void Dialog::SetFonts(int dpi) {
  auto fonts = std::make_unique<Fonts>(dpi);
  dpi_ = dpi;
  for (HWND child = GetWindow(handle_, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    SendMessageA(child, WM_SETFONT, reinterpret_cast<WPARAM>(fonts->text()), TRUE);
  }
  fonts_ = std::move(fonts);  // the ones before go when no control has them any more
}

void Dialog::End(int id) {
  if (id == IDCANCEL || Item(id) != nullptr) {
    OnEnd(id);
    EndDialog(handle_, id);
  }
}

void Dialog::Center(SIZE size) const {
  const RECT room = WorkAreaOf(owner_ != nullptr ? owner_ : handle_);
  RECT around = room;
  if (owner_ != nullptr && IsIconic(owner_) == FALSE) GetWindowRect(owner_, &around);
  SetWindowPos(handle_, topmost_ ? HWND_TOPMOST : HWND_TOP,
               MiddleOf(around.left, around.right, size.cx, room.left, room.right),
               MiddleOf(around.top, around.bottom, size.cy, room.top, room.bottom), size.cx,
               size.cy, SWP_NOACTIVATE);
}

int Dialog::TitleWidth() const {
  const RECT room = WorkAreaOf(owner_ != nullptr ? owner_ : handle_);
  constexpr int kIconAndButton = 40;
  const LONG title = TextSize(fonts_->text(), title_).cx + units().X(kIconAndButton);
  return static_cast<int>(std::min(title, (room.right - room.left) * 9 / 10));
}

HWND Dialog::Add(const char* window_class, const std::string& text, DWORD style, int id,
                 DWORD extended) {
  return CreateWindowExA(extended, window_class, text.c_str(), style | WS_CHILD | WS_VISIBLE, 0, 0,
                         0, 0, handle_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr,
                         nullptr);
}

void Dialog::Place(int id, int left, int top, int width, int height) const {
  MoveWindow(Item(id), left, top, width, height, TRUE);
}

void Dialog::SetItemFont(int id, HFONT font) const {
  SendMessageA(Item(id), WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

}  // namespace zent
