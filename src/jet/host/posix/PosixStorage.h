#pragma once

#include <memory>
#include <string_view>

#include "jet/storage/Storage.h"

namespace zent::jet {

/// Storage over the files of a POSIX system (Linux). Paths are the host's.
///
/// The system knows no sharing: each opener holds a lock on one byte far beyond the end, shared, or
/// exclusively for Sharing::Exclusive. So our programs keep out of each other's way; an exclusive
/// opening also fails while any other program has the file open, where the system tells (file
/// leases). Another program that opens the file later is not kept out. All locks are those of the
/// open file (F_OFD_SETLK): two openers within a process are two.
class PosixStorage final : public Storage {
 public:
  Result<std::unique_ptr<StoredFile>> Open(std::string_view path, Sharing sharing) override;
  Result<std::unique_ptr<StoredFile>> Create(std::string_view path, Sharing sharing,
                                             std::string_view like) override;
  Status Delete(std::string_view path) override;
  Result<bool> Exists(std::string_view path) override;
  Status Rename(std::string_view path, std::string_view new_path) override;
  Status FlushFolder(std::string_view path) override;
  void Pause(std::chrono::milliseconds time) override;
};

}  // namespace zent::jet
