#include "app/windows/Terminal.h"

#include "platform/win32/SystemFunctions.h"

namespace zent {
namespace {

constexpr DWORD kParentProcess = 0xFFFFFFFF;  // ATTACH_PARENT_PROCESS

/// What the caller has redirected; null for a handle of a console that is not ours, too.
HANDLE Redirected(DWORD which) {
  const HANDLE handle = GetStdHandle(which);
  if (handle == nullptr || handle == INVALID_HANDLE_VALUE) return nullptr;
  SetLastError(ERROR_SUCCESS);
  const bool usable = GetFileType(handle) != FILE_TYPE_UNKNOWN || GetLastError() == ERROR_SUCCESS;
  return usable ? handle : nullptr;
}

UniqueHandle OpenConsole(const char* name) {
  return UniqueHandle(CreateFileA(name, GENERIC_READ | GENERIC_WRITE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                  nullptr));
}

}  // namespace

Terminal::Terminal()
    : input_(Redirected(STD_INPUT_HANDLE)),
      output_(Redirected(STD_OUTPUT_HANDLE)),
      error_(Redirected(STD_ERROR_HANDLE)) {}

void Terminal::JoinCaller() {
  if (input_ != nullptr && output_ != nullptr && error_ != nullptr) return;
  using Attach = BOOL WINAPI(DWORD);
  const auto attach = FindSystemFunction<Attach>("kernel32", "AttachConsole");
  if (attach != nullptr && attach(kParentProcess) != FALSE) TakeConsole();
}

void Terminal::Open() {
  JoinCaller();
  if (input_ != nullptr && output_ != nullptr) return;
  if (AllocConsole() != FALSE) TakeConsole();
}

void Terminal::TakeConsole() {
  console_input_ = OpenConsole("CONIN$");
  console_output_ = OpenConsole("CONOUT$");
  if (input_ == nullptr && console_input_.ok()) input_ = console_input_.get();
  if (output_ == nullptr && console_output_.ok()) output_ = console_output_.get();
  if (error_ == nullptr && console_output_.ok()) error_ = console_output_.get();
}

}  // namespace zent
