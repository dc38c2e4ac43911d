#pragma once

#include "jet/storage/Storage.h"

namespace zent::jet {

/// The run-time error of an errno.
RuntimeError ErrorOfErrno(int error);

/// An open file of a POSIX system; owns the descriptor.
class PosixFile final : public StoredFile {
 public:
  PosixFile(int fd, bool writable) : fd_(fd), writable_(writable) {}
  ~PosixFile() override;
  PosixFile(const PosixFile&) = delete;
  PosixFile& operator=(const PosixFile&) = delete;

  int fd() const { return fd_; }

  Result<std::uint64_t> Size() override;
  Result<std::size_t> ReadAt(std::uint64_t offset, MutableBytes buffer) override;
  Status WriteAt(std::uint64_t offset, ByteView bytes) override;
  Status Resize(std::uint64_t size) override;
  Status Flush() override;
  Result<bool> TryLock(std::uint64_t offset, std::uint64_t length, bool exclusive) override;
  Status Unlock(std::uint64_t offset, std::uint64_t length) override;

 private:
  /// Has the system begin to put on disk what was written, so that a Flush finds little to do.
  void StartWriteback();

  int fd_;
  bool writable_;
  std::size_t unstarted_ = 0;  ///< bytes written since
};

}  // namespace zent::jet
