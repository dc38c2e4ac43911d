#include "ui/win32/Outside.h"

#include <array>
#include <chrono>
#include <thread>

#include "ui/win32/MainWindow.h"

namespace zent::testing {
namespace {

constexpr int kButtons[] = {IDOK, IDCANCEL, IDRETRY, IDYES, IDNO};

bool HasButton(HWND box) {
  for (const int id : kButtons) {
    if (IsWindowVisible(GetDlgItem(box, id)) != FALSE) return true;
  }
  return false;
}

struct BoxSearch {
  DWORD process = 0;
  HWND found = nullptr;
};

BOOL CALLBACK IsBox(HWND window, LPARAM search_address) {
  auto& search = *reinterpret_cast<BoxSearch*>(search_address);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  const bool is_box = process == search.process && ClassOf(window) == "#32770" &&
                      IsWindowVisible(window) != FALSE && HasButton(window);
  if (is_box) search.found = window;
  return is_box ? FALSE : TRUE;
}

}  // namespace

bool WaitFor(const std::function<bool()>& done) {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!done()) {
    if (std::chrono::steady_clock::now() > limit) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

HWND FindMain() {
  const HWND window = FindWindowA(MainWindow::kClass, nullptr);
  return IsWindowVisible(window) != FALSE ? window : nullptr;
}

HWND Control(int id) { return GetDlgItem(FindWindowA(MainWindow::kClass, nullptr), id); }

HWND WaitForBox() {
  BoxSearch search;
  GetWindowThreadProcessId(FindWindowA(MainWindow::kClass, nullptr), &search.process);
  WaitFor([&search] {
    EnumWindows(&IsBox, reinterpret_cast<LPARAM>(&search));
    return search.found != nullptr;
  });
  return search.found;
}

HWND BoxItem(HWND box, int id) {
  for (HWND child = GetWindow(box, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if ((GetDlgCtrlID(child) & 0xFFFF) == id) return child;
  }
  return nullptr;
}

HWND EditOf(HWND box) { return FindWindowExA(box, nullptr, "Edit", nullptr); }

std::string TextOf(HWND window) {
  std::string text(static_cast<std::size_t>(SendMessageA(window, WM_GETTEXTLENGTH, 0, 0)) + 1,
                   '\0');
  const LRESULT length =
      SendMessageA(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

std::string ClassOf(HWND window) {
  std::array<char, 64> name{};
  GetClassNameA(window, name.data(), static_cast<int>(name.size()));
  return name.data();
}

HWND FocusOf(HWND window) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
  return info.hwndFocus;
}

void Click(HWND button) { PostMessageA(button, BM_CLICK, 0, 0); }

void PressKey(HWND control, WPARAM key) { PostMessageA(control, WM_KEYDOWN, key, 1); }

void PressMnemonic(HWND control, char letter) {
  constexpr LPARAM kAltIsDown = LPARAM{1} << 29;
  PostMessageA(control, WM_SYSCHAR, static_cast<WPARAM>(letter), kAltIsDown);
}

void Type(HWND control, const std::string& text) {
  for (const char c : text) {
    PostMessageA(control, WM_CHAR, static_cast<unsigned char>(c), 1);
  }
}

void CloseFrame(HWND window) { PostMessageA(window, WM_CLOSE, 0, 0); }

}  // namespace zent::testing
