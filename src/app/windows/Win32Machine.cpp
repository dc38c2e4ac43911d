#include "app/windows/Win32Machine.h"

#include <windows.h>

#include <utility>

#include "platform/win32/AnsiText.h"
#include "platform/win32/Win32Errors.h"

namespace zent {
namespace {

// In the namespace that all sessions of the machine share, from Windows 2000 on.
constexpr const char* kSharedName = R"(Global\ZentUpdate run)";
constexpr const char* kPlainName = "ZentUpdate run";

/// The lock of the machine's one run. It goes with the process, however that ends.
Result<UniqueHandle> LockMachine() {
  UniqueHandle lock(CreateMutexA(nullptr, FALSE, kSharedName));
  if (!lock.ok() && GetLastError() == ERROR_PATH_NOT_FOUND) {
    lock = UniqueHandle(CreateMutexA(nullptr, FALSE, kPlainName));
  }
  const DWORD error = GetLastError();
  if (lock.ok() && error != ERROR_ALREADY_EXISTS) return lock;
  // Denied: the lock of another user's run.
  if (error != ERROR_ALREADY_EXISTS && error != ERROR_ACCESS_DENIED) return ErrorOfWin32(error);
  return StandardError(kPermissionDenied, "another run is at work on this machine");
}

}  // namespace

Result<std::unique_ptr<Win32Machine>> Win32Machine::Open(const std::string& package) {
  Result<UniqueHandle> lock = LockMachine();
  if (!lock.ok()) return lock.error();
  // Paths that the system's own calls are given count from here as well.
  const Result<std::string> folder = AnsiOf(package);
  if (!folder.ok()) return folder.error();
  if (SetCurrentDirectoryA(folder.value().c_str()) == FALSE) {
    return StandardError(kPathNotFound, package);
  }
  return std::unique_ptr<Win32Machine>(new Win32Machine(std::move(lock.value()), package));
}

}  // namespace zent
