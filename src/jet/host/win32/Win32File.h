#pragma once

#include <windows.h>

#include "jet/storage/Storage.h"

namespace zent::jet {

/// The run-time error of the last system call of this thread that failed.
RuntimeError ErrorOfLastCall();

/// An open file of Windows; owns the handle.
class Win32File final : public StoredFile {
 public:
  Win32File(HANDLE handle, bool writable) : handle_(handle), writable_(writable) {}
  ~Win32File() override;
  Win32File(const Win32File&) = delete;
  Win32File& operator=(const Win32File&) = delete;

  Result<std::uint64_t> Size() override;
  Result<std::size_t> ReadAt(std::uint64_t offset, MutableBytes buffer) override;
  Status WriteAt(std::uint64_t offset, ByteView bytes) override;
  Status Resize(std::uint64_t size) override;
  Status Flush() override;
  Result<bool> TryLock(std::uint64_t offset, std::uint64_t length, bool exclusive) override;
  Status Unlock(std::uint64_t offset, std::uint64_t length) override;

 private:
  HANDLE handle_;
  bool writable_;
};

}  // namespace zent::jet
