// A program for the tests to start. It writes what it was given beside itself, into "NAME.record"
// (its command line, its folder, its show state, the
// version of the system, one a line), and ends with 7. With "window TITLE"
// it first shows a window of that title until that is closed, or ten seconds have passed.
#include <windows.h>

#include <cstring>
#include <fstream>
#include <string>

#include "platform/win32/session/Win32SystemInfo.h"

namespace {

constexpr int kExitCode = 7;
constexpr UINT kLongestLife = 10000;  // milliseconds

LRESULT CALLBACK WindowCalled(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_DESTROY || message == WM_TIMER) PostQuitMessage(0);
  return DefWindowProcA(window, message, first, second);
}

void ShowUntilClosed(HINSTANCE program, const char* title) {
  WNDCLASSA kind = {};
  kind.lpfnWndProc = WindowCalled;
  kind.hInstance = program;
  kind.lpszClassName = "OtherProgram";
  RegisterClassA(&kind);
  const HWND window = CreateWindowA(kind.lpszClassName, title, WS_OVERLAPPEDWINDOW, 10, 10, 200,
                                    100, nullptr, nullptr, program, nullptr);
  ShowWindow(window, SW_SHOWNOACTIVATE);
  SetTimer(window, 1, kLongestLife, nullptr);
  MSG message = {};
  while (GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
}

}  // namespace

int WINAPI WinMain(HINSTANCE program, HINSTANCE, char* arguments, int) {
  constexpr const char* kWindowWord = "window ";
  const std::size_t length = std::strlen(kWindowWord);
  if (std::strncmp(arguments, kWindowWord, length) == 0) {
    ShowUntilClosed(program, arguments + length);
  }
  char path[MAX_PATH] = {};
  char folder[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  GetCurrentDirectoryA(MAX_PATH, folder);
  STARTUPINFOA startup = {};
  GetStartupInfoA(&startup);
  const zent::OsVersion version = zent::Win32SystemInfo().Version();
  std::ofstream(std::string(path) + ".record", std::ios::binary)
      << GetCommandLineA() << "\n"
      << folder << "\n"
      << ((startup.dwFlags & STARTF_USESHOWWINDOW) != 0 ? startup.wShowWindow : 0) << "\n"
      << version.platform << " " << version.major << " " << version.minor << "\n";
  return kExitCode;
}
