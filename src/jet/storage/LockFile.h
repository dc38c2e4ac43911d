#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/storage/Storage.h"

namespace zent::jet {

/// Who has a database open.
struct User {
  std::string computer;
  std::string name = "Admin";
  int slot = 0;          ///< 1 to 255
  bool foreign = false;  ///< a program that does not take part in our write and read locks

  bool operator==(const User&) const = default;
};

/// The lock file (".ldb") beside a database that is opened shared: up to 255 entries of 64 bytes,
/// 32 for the computer and 32 for the user, filled with zeros. An entry counts while the byte
/// 0x10000000 + slot of the lock file is locked, so that one left behind by a killed program counts
/// no more. That is what Microsoft published of Jet's locking. Our own programs also lock
/// 0x70000000 + slot, outside of Jet's ranges: by this they know each other.
class LockFile {
 public:
  /// "C:\Data\Korvo.ldb" for "C:\Data\Korvo.mdb"; ".ldb" is appended to a name without that ending.
  static std::string PathFor(std::string_view database);

  /// Takes the first free slot and writes our entry, creating the file where it is missing.
  /// kDatabaseInUse when all slots are taken.
  static Result<std::unique_ptr<LockFile>> Enter(Storage& storage, std::string_view database,
                                                 const User& user);

  /// Users of a database that we do not have open. A missing lock file has none.
  static Result<std::vector<User>> UsersOf(Storage& storage, std::string_view database);

  /// Whether anyone has a slot of a database that we have open exclusively, and keeps it for 200
  /// ms: who leaves holds all slots for a moment. A lock file that cannot be read tells of nobody.
  static bool IsInUse(Storage& storage, std::string_view database);

  /// Gives back the slot; the last user deletes the file.
  ~LockFile();
  LockFile(const LockFile&) = delete;
  LockFile& operator=(const LockFile&) = delete;

  int slot() const { return slot_; }
  /// Everyone, ourselves included, by slot.
  Result<std::vector<User>> Users();
  /// Whether a program that does not take part in our locks has a slot, and keeps it for 200 ms:
  /// our own look like one while they leave. Without such a slot the answer comes at once.
  Result<bool> HasForeignUser();

 private:
  LockFile(Storage& storage, std::string path, std::unique_ptr<StoredFile> file, int slot);

  Storage& storage_;
  std::string path_;
  std::unique_ptr<StoredFile> file_;
  int slot_ = 0;
};

}  // namespace zent::jet
