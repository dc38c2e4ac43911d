#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "base/Status.h"
#include "jet/format/Bytes.h"

/// What the engine wants of files. Adapters implement it over a system's files; everything above
/// knows no system.
///
/// Errors are run-time errors in the classic numbering (base/ErrorNumbers.h), which the engine
/// turns into DAO's: kFileNotFound, kPathNotFound (a folder of the path is missing),
/// kPermissionDenied (another opener's sharing does not allow it), kPathFileAccess
/// (write-protected, no right, a folder), kBadFileName, kTooManyFiles, kDiskFull,
/// kFileAlreadyExists, kDeviceIoError (the rest).
namespace zent::jet {

/// How a file is opened, and what others may do meanwhile.
enum class Sharing : std::uint8_t {
  Exclusive,  ///< read and write; no one else has it open, nobody opens it meanwhile
  Shared,     ///< read and write; others may open it Shared or ReadOnly
  ReadOnly,   ///< read; others may open it Shared or ReadOnly
};

/// An open file. Closing it (the destructor) gives back its locks and flushes nothing. One thread
/// at a time.
class StoredFile {
 public:
  virtual ~StoredFile() = default;

  /// Present size in bytes, also after another opener changed it.
  virtual Result<std::uint64_t> Size() = 0;

  /// Fills `buffer` from byte `offset` on and returns how many bytes it got: fewer than asked, or
  /// none, only at the end of the file. Sees at once what any other opener wrote.
  virtual Result<std::size_t> ReadAt(std::uint64_t offset, MutableBytes buffer) = 0;

  /// Writes all of `bytes` at byte `offset`, lengthening the file where it reaches beyond its end
  /// (a gap reads as zeros). After an error any part of it may have been written. Nothing is
  /// durable before Flush, and what was written since the last Flush may reach the disk in any
  /// order, in part, or not at all. What is within one block of 512 bytes (counted from the start
  /// of the file) reaches it whole or not.
  virtual Status WriteAt(std::uint64_t offset, ByteView bytes) = 0;

  /// Makes the file `size` bytes long: cuts off, or adds zeros. Durable after Flush, as a write.
  virtual Status Resize(std::uint64_t size) = 0;

  /// Returns when everything written so far, and the size, will survive a loss of power (fdatasync,
  /// FlushFileBuffers). After an error nothing is known about what was written since the last one.
  virtual Status Flush() = 0;

  /// Tries to lock the `length` bytes from `offset` on, which usually lie far beyond the end of the
  /// file, without waiting. True: locked until Unlock, or until the file is closed or the process
  /// ends in whatever way. False: another opener, of this process or of another one, holds a lock
  /// in the range and one of the two is exclusive. A shared lock goes with shared locks. A range
  /// must not overlap one that this file object holds already.
  ///
  /// Locks need not keep anyone from reading or writing the bytes (on Windows they do, which is why
  /// no lock of the engine lies within a file). On a file opened ReadOnly an exclusive lock may be
  /// kPathFileAccess; the engine asks for shared ones only.
  virtual Result<bool> TryLock(std::uint64_t offset, std::uint64_t length, bool exclusive) = 0;

  /// Gives back exactly the range of one successful TryLock.
  virtual Status Unlock(std::uint64_t offset, std::uint64_t length) = 0;
};

/// The files of a machine. Paths are what the adapter takes (full Windows paths, or host paths) in
/// UTF-8; the engine only ever appends to a path or replaces the ending ".mdb".
class Storage {
 public:
  virtual ~Storage() = default;

  /// Opens an existing file. kPermissionDenied when another opener's sharing forbids it or, for
  /// Exclusive, when anyone at all has the file open as far as the system can tell.
  virtual Result<std::unique_ptr<StoredFile>> Open(std::string_view path, Sharing sharing) = 0;

  /// Creates an empty file and opens it (not ReadOnly). kFileAlreadyExists when there is one: of
  /// two callers at the same time exactly one succeeds. The file gets the owner and the rights of
  /// the file `like`, as far as the system keeps those per file and lets us; the usual ones where
  /// `like` is empty or missing.
  virtual Result<std::unique_ptr<StoredFile>> Create(std::string_view path, Sharing sharing,
                                                     std::string_view like) = 0;

  /// Deletes a file. One that others hold open is kPermissionDenied where the system refuses that,
  /// else its name goes and they keep what they have.
  virtual Status Delete(std::string_view path) = 0;

  /// Whether a file (not a folder) of that name is there.
  virtual Result<bool> Exists(std::string_view path) = 0;

  /// Gives the file another name in the same folder, replacing a file of that name: at every
  /// instant the new name stands for the old file or for the new one. Neither may be open.
  virtual Status Rename(std::string_view path, std::string_view new_path) = 0;

  /// Makes creations, deletions and renames in the folder of `path` durable. Where the system does
  /// that by itself, or has no call for it, nothing.
  virtual Status FlushFolder(std::string_view path) = 0;

  /// Waits before a lock is tried again.
  virtual void Pause(std::chrono::milliseconds time) = 0;
};

}  // namespace zent::jet
