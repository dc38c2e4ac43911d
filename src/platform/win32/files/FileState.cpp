#include "platform/win32/files/FileState.h"

#include <windows.h>

#include <optional>

#include "platform/FileSystem.h"
#include "platform/win32/UniqueHandle.h"
#include "platform/win32/files/FileErrors.h"

namespace zent {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::uint32_t kStored =
    kAttributeReadOnly | kAttributeHidden | kAttributeSystem | kAttributeArchive;

UniqueHandle OpenExisting(const std::string& path, DWORD access) {
  return UniqueHandle(
      CreateFileA(path.c_str(), access, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
}

bool SetBits(const std::string& path, std::uint32_t bits) {
  return SetFileAttributesA(path.c_str(), bits == 0 ? FILE_ATTRIBUTE_NORMAL : bits) != FALSE;
}

std::optional<BY_HANDLE_FILE_INFORMATION> Identity(const std::string& path) {
  const UniqueHandle file = OpenExisting(path, 0);
  BY_HANDLE_FILE_INFORMATION info = {};
  if (!file.ok() || !GetFileInformationByHandle(file.get(), &info)) return std::nullopt;
  return info;
}

}  // namespace

Result<std::uint32_t> AttributesOf(const std::string& path) {
  const DWORD bits = GetFileAttributesA(path.c_str());
  if (bits == INVALID_FILE_ATTRIBUTES) return LastFileError();
  return bits & (kStored | kAttributeFolder);
}

Status StoreAttributes(const std::string& path, std::uint32_t attributes) {
  const Result<std::uint32_t> present = AttributesOf(path);
  if (!present.ok()) return present.error();
  std::uint32_t bits = attributes & kStored;
  if ((present.value() & kAttributeFolder) != 0) bits &= ~kAttributeReadOnly;
  // Where hidden and system are kept in the file itself (Wine), they cannot be stored any more once
  // it is read-only.
  if (!SetBits(path, bits & ~kAttributeReadOnly)) return LastFileError();
  const bool read_only = (bits & kAttributeReadOnly) != 0;
  return !read_only || SetBits(path, bits) ? Status() : LastFileError();
}

Status CheckReplaceable(const std::string& path) {
  const Result<std::uint32_t> attributes = AttributesOf(path);
  if (!attributes.ok()) return attributes.error();
  constexpr std::uint32_t kRefused = kAttributeFolder | kAttributeReadOnly;
  if ((attributes.value() & kRefused) != 0) return StandardError(kPathFileAccess);
  // The right to write is what a running program and a loaded library refuse; the right to delete
  // is what a program refuses that has the file open in the usual way.
  const UniqueHandle file = OpenExisting(path, GENERIC_WRITE | DELETE);
  return file.ok() ? Status() : LastFileError();
}

Status CheckMovable(const std::string& path) {
  const UniqueHandle file = OpenExisting(path, GENERIC_READ | DELETE);
  return file.ok() ? Status() : LastFileError();
}

RuntimeError ReasonForDenial(const std::string& path) {
  const Status replaceable = CheckReplaceable(path);
  const bool in_use = !replaceable.ok() && replaceable.number() == kPermissionDenied;
  return StandardError(in_use ? kPermissionDenied : kPathFileAccess);
}

bool IsSameFile(const std::string& a, const std::string& b) {
  const auto of_a = Identity(a);
  const auto of_b = Identity(b);
  return of_a && of_b && of_a->dwVolumeSerialNumber == of_b->dwVolumeSerialNumber &&
         of_a->nFileIndexHigh == of_b->nFileIndexHigh && of_a->nFileIndexLow == of_b->nFileIndexLow;
}

}  // namespace zent
