#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "base/Status.h"
#include "jet/storage/Storage.h"

namespace zent::jet {

/// The locks by which our own programs share a database that is not opened exclusively. They are
/// bytes of the database file beyond the largest size that one can have:
///
///   0x80000000  write: held exclusively by the one who has a transaction open
///   0x80000001  gate: held exclusively while a writer waits for readers to leave and while it
///               overwrites pages; readers pass it (shared, for a moment) on their way in
///   0x80000002  read: held shared while reading, exclusively while pages are overwritten
///
/// Opened exclusively there is no one to share with: every call succeeds and does nothing.
class FileLocks {
 public:
  struct Patience {
    int attempts = 1;  ///< at least 1
    std::chrono::milliseconds pause{0};
  };

  /// `storage` serves to wait, `file` holds the locks.
  FileLocks(Storage& storage, StoredFile& file, bool exclusive, Patience patience);

  /// kCannotLock when a writer is at it for as long as our patience.
  Status LockForReading();
  void UnlockForReading();

  /// kCannotLock when another transaction stays open; without waiting unless `wait`.
  Status LockForWriting(bool wait);
  void UnlockForWriting();

  /// For the one who holds the write lock and perhaps the read lock: returns when no one else
  /// reads. kCannotLock, and everything as before, when readers stay.
  Status LockOutReaders();
  /// Lets readers in; `reading`: we still read ourselves.
  void AdmitReaders(bool reading);

  bool reading() const { return reading_; }
  bool writing() const { return writing_; }
  bool alone() const { return alone_; }

 private:
  Result<bool> Try(std::uint64_t byte, bool exclusive, bool wait);
  void Free(std::uint64_t byte);

  Storage& storage_;
  StoredFile& file_;
  bool exclusive_;
  Patience patience_;
  bool reading_ = false;
  bool writing_ = false;
  bool alone_ = false;
};

}  // namespace zent::jet
