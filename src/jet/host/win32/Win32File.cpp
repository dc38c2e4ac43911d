#include "jet/host/win32/Win32File.h"

#include <algorithm>
#include <string>

namespace zent::jet {
namespace {

constexpr std::size_t kMostAtOnce = std::size_t{1} << 24U;  // bytes of one call

int NumberOfCode(DWORD code) {
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
      return kFileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_DIRECTORY:
      return kPathNotFound;
    case ERROR_TOO_MANY_OPEN_FILES:
      return kTooManyFiles;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
      return kPathFileAccess;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
      return kPermissionDenied;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return kFileAlreadyExists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return kDiskFull;
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
      return kBadFileName;
    default:
      return kDeviceIoError;
  }
}

/// Whether the last call failed for a file that was deleted and goes when the last one closes it:
/// that passes, unlike a lack of rights, though both have one Win32 code.
bool WasBeingDeleted() {
  constexpr ULONG kDeletePending = 0xC0000056;
  using LastStatus = LONG(NTAPI*)();
  static const auto last_status = reinterpret_cast<LastStatus>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetLastNtStatus")));
  return last_status != nullptr && static_cast<ULONG>(last_status()) == kDeletePending;
}

OVERLAPPED PlaceOf(std::uint64_t offset) {
  OVERLAPPED place = {};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32U);
  return place;
}

DWORD Low(std::uint64_t value) { return static_cast<DWORD>(value); }
DWORD High(std::uint64_t value) { return static_cast<DWORD>(value >> 32U); }

}  // namespace

RuntimeError ErrorOfLastCall() {
  const DWORD code = GetLastError();
  if (code == ERROR_ACCESS_DENIED && WasBeingDeleted()) return StandardError(kPermissionDenied);
  const int number = NumberOfCode(code);
  if (number != kDeviceIoError) return StandardError(number);
  return StandardError(number, "system error " + std::to_string(code));
}

Win32File::~Win32File() { CloseHandle(handle_); }

Result<std::uint64_t> Win32File::Size() {
  LARGE_INTEGER size = {};
  if (GetFileSizeEx(handle_, &size) == 0) return ErrorOfLastCall();
  return static_cast<std::uint64_t>(size.QuadPart);
}

Result<std::size_t> Win32File::ReadAt(std::uint64_t offset, MutableBytes buffer) {
  std::size_t done = 0;
  while (done < buffer.size()) {
    OVERLAPPED place = PlaceOf(offset + done);
    const auto wanted = static_cast<DWORD>(std::min(buffer.size() - done, kMostAtOnce));
    DWORD got = 0;
    if (ReadFile(handle_, buffer.data() + done, wanted, &got, &place) == 0) {
      if (GetLastError() == ERROR_HANDLE_EOF) break;
      return ErrorOfLastCall();
    }
    if (got == 0) break;
    done += got;
  }
  return done;
}

Status Win32File::WriteAt(std::uint64_t offset, ByteView bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    OVERLAPPED place = PlaceOf(offset + done);
    const auto wanted = static_cast<DWORD>(std::min(bytes.size() - done, kMostAtOnce));
    DWORD put = 0;
    if (WriteFile(handle_, bytes.data() + done, wanted, &put, &place) == 0)
      return ErrorOfLastCall();
    if (put == 0) return StandardError(kDiskFull);
    done += put;
  }
  return {};
}

Status Win32File::Resize(std::uint64_t size) {
  if (!writable_) return StandardError(kPathFileAccess);
  LARGE_INTEGER end = {};
  end.QuadPart = static_cast<LONGLONG>(size);
  if (SetFilePointerEx(handle_, end, nullptr, FILE_BEGIN) == 0 || SetEndOfFile(handle_) == 0) {
    return ErrorOfLastCall();
  }
  return {};
}

Status Win32File::Flush() {
  if (FlushFileBuffers(handle_) == 0) return ErrorOfLastCall();
  return {};
}

Result<bool> Win32File::TryLock(std::uint64_t offset, std::uint64_t length, bool exclusive) {
  OVERLAPPED place = PlaceOf(offset);
  const DWORD how = LOCKFILE_FAIL_IMMEDIATELY | (exclusive ? DWORD{LOCKFILE_EXCLUSIVE_LOCK} : 0);
  if (LockFileEx(handle_, how, 0, Low(length), High(length), &place) != 0) return true;
  const DWORD code = GetLastError();
  if (code == ERROR_LOCK_VIOLATION || code == ERROR_IO_PENDING) return false;
  return ErrorOfLastCall();
}

Status Win32File::Unlock(std::uint64_t offset, std::uint64_t length) {
  OVERLAPPED place = PlaceOf(offset);
  if (UnlockFileEx(handle_, 0, Low(length), High(length), &place) == 0) return ErrorOfLastCall();
  return {};
}

}  // namespace zent::jet
