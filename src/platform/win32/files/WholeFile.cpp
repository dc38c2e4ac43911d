#include "platform/win32/files/WholeFile.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "platform/win32/UniqueHandle.h"
#include "platform/win32/files/FileErrors.h"

namespace zent {
namespace {

/// Bytes of one call: the system counts them in 32 bits, and network drives take less.
constexpr std::size_t kMaxChunk = std::size_t{1} << 24U;

OVERLAPPED At(std::uint64_t offset) {
  OVERLAPPED at = {};
  at.Offset = static_cast<DWORD>(offset);
  at.OffsetHigh = static_cast<DWORD>(offset >> 32U);
  return at;
}

class Win32File : public File {
 public:
  explicit Win32File(UniqueHandle handle) : handle_(std::move(handle)) {}

  Result<std::uint64_t> Size() override {
    LARGE_INTEGER size = {};
    if (!GetFileSizeEx(handle_.get(), &size)) return LastFileError();
    return static_cast<std::uint64_t>(size.QuadPart);
  }

  Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> buffer) override {
    constexpr std::uint64_t kEnd = std::numeric_limits<std::int64_t>::max();
    std::size_t filled = 0;
    while (filled < buffer.size()) {
      if (offset > kEnd - filled) break;
      const std::span<char> rest = buffer.subspan(filled);
      const auto wanted = static_cast<DWORD>(std::min(rest.size(), kMaxChunk));
      OVERLAPPED at = At(offset + filled);
      DWORD read = 0;
      if (!ReadFile(handle_.get(), rest.data(), wanted, &read, &at)) {
        if (GetLastError() == ERROR_HANDLE_EOF) break;
        return LastFileError();
      }
      if (read == 0) break;
      filled += read;
    }
    return filled;
  }

 private:
  UniqueHandle handle_;
};

}  // namespace

Status WriteWhole(HANDLE file, std::string_view contents) {
  while (!contents.empty()) {
    const auto wanted = static_cast<DWORD>(std::min(contents.size(), kMaxChunk));
    DWORD written = 0;
    if (!WriteFile(file, contents.data(), wanted, &written, nullptr)) return LastFileError();
    // A write that takes nothing and tells nothing has found no room.
    if (written == 0) return StandardError(kDiskFull);
    contents.remove_prefix(written);
  }
  return FlushFileBuffers(file) ? Status() : LastFileError();
}

Result<std::unique_ptr<File>> OpenToRead(const std::string& path) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  UniqueHandle handle(
      CreateFileA(path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!handle.ok()) return LastFileError();
  return std::unique_ptr<File>(std::make_unique<Win32File>(std::move(handle)));
}

}  // namespace zent
