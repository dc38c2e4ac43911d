#include "jet/storage/LockFile.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <random>
#include <utility>

#include "base/CodePage.h"
#include "base/Text.h"
#include "jet/format/JetErrors.h"
#include "jet/storage/StorageErrors.h"

namespace zent::jet {
namespace {

constexpr int kSlots = 255;
constexpr std::size_t kEntrySize = 64;
constexpr std::size_t kNameSize = 32;
constexpr std::uint64_t kSlotLocks = 0x10000000;  // + slot: Jet's user locks
constexpr std::uint64_t kOurLocks = 0x70000000;   // + slot: outside of all of Jet's ranges

constexpr int kEnterAttempts = 20;
constexpr std::chrono::milliseconds kEnterPause{10};

// Our programs hold slots without a mark for the moment in which they leave, and one that leaves
// between two questions looks so; a program of another kind holds its slot as long as it runs.
constexpr int kForeignLooks = 20;
constexpr std::chrono::milliseconds kForeignPause{10};

constexpr std::uint64_t EntryOffset(int slot) {
  return static_cast<std::uint64_t>(slot - 1) * kEntrySize;
}

/// Appends the slots of first .. first + count - 1 whose byte from `base` on is locked by others.
/// Asks for a shared lock, so that two who ask do not take each other for users.
Status FindLocked(StoredFile& file, std::uint64_t base, int first, int count,
                  std::vector<int>& found) {
  if (count <= 0) return {};
  const std::uint64_t offset = base + static_cast<std::uint64_t>(first);
  const auto length = static_cast<std::uint64_t>(count);
  const Result<bool> free = file.TryLock(offset, length, false);
  if (!free.ok()) return FileError(free.error());
  if (free.value()) return AsFileStatus(file.Unlock(offset, length));
  if (count == 1) {
    found.push_back(first);
    return {};
  }
  const int half = count / 2;
  if (Status low = FindLocked(file, base, first, half, found); !low.ok()) return low;
  return FindLocked(file, base, first + half, count - half, found);
}

/// Slots of users other than `own` (0: none).
Result<std::vector<int>> OtherSlots(StoredFile& file, int own) {
  std::vector<int> found;
  const int below = own == 0 ? kSlots : own - 1;
  if (Status low = FindLocked(file, kSlotLocks, 1, below, found); !low.ok()) return low.error();
  if (own == 0) return found;
  Status high = FindLocked(file, kSlotLocks, own + 1, kSlots - own, found);
  if (!high.ok()) return high.error();
  return found;
}

Result<bool> IsForeign(StoredFile& file, int slot) {
  std::vector<int> ours;
  if (Status asked = FindLocked(file, kOurLocks, slot, 1, ours); !asked.ok()) return asked.error();
  return ours.empty();
}

/// Of `slots`, those that are taken and have no mark of ours at this moment.
Result<std::vector<int>> WithoutMark(StoredFile& file, const std::vector<int>& slots) {
  std::vector<int> found;
  for (const int slot : slots) {
    const Result<bool> foreign = IsForeign(file, slot);
    if (!foreign.ok()) return foreign.error();
    // Asked last: who leaves gives back the slot before the mark.
    if (!foreign.value()) continue;
    if (Status taken = FindLocked(file, kSlotLocks, slot, 1, found); !taken.ok()) {
      return taken.error();
    }
  }
  return found;
}

std::string NameIn(ByteView field) {
  const std::string_view bytes = AsText(field);
  const std::string_view name = bytes.substr(0, bytes.find('\0'));
  const std::size_t end = name.find_last_not_of(' ');
  return FromAnsi(name.substr(0, end == std::string_view::npos ? 0 : end + 1));
}

Result<User> UserIn(StoredFile& file, int slot, int own) {
  std::array<std::uint8_t, kEntrySize> entry = {};
  if (const auto got = file.ReadAt(EntryOffset(slot), entry); !got.ok()) {
    return FileError(got.error());
  }
  User user{.computer = NameIn(ByteView(entry).first(kNameSize)),
            .name = NameIn(ByteView(entry).subspan(kNameSize)),
            .slot = slot};
  if (slot == own) return user;
  const Result<bool> foreign = IsForeign(file, slot);
  if (!foreign.ok()) return foreign.error();
  user.foreign = foreign.value();
  return user;
}

Result<std::vector<User>> UsersIn(StoredFile& file, int own) {
  Result<std::vector<int>> slots = OtherSlots(file, own);
  if (!slots.ok()) return slots.error();
  if (own != 0) slots.value().push_back(own);
  std::sort(slots.value().begin(), slots.value().end());
  std::vector<User> users;
  for (const int slot : slots.value()) {
    Result<User> user = UserIn(file, slot, own);
    if (!user.ok()) return user.error();
    users.push_back(std::move(user.value()));
  }
  return users;
}

/// At most 31 bytes, so that a zero ends it.
void PutName(std::string_view name, MutableBytes field) {
  const std::string bytes = ToAnsi(name);
  std::copy_n(bytes.begin(), std::min(bytes.size(), kNameSize - 1), field.begin());
}

Status WriteEntry(StoredFile& file, int slot, const User& user) {
  std::array<std::uint8_t, kEntrySize> entry = {};
  PutName(user.computer, MutableBytes(entry).first(kNameSize));
  PutName(user.name, MutableBytes(entry).subspan(kNameSize));
  return AsFileStatus(file.WriteAt(EntryOffset(slot), entry));
}

/// Locks the first free slot; 0 when there is none. Our mark first: who sees the slot taken must
/// see whose it is.
Result<int> TakeSlot(StoredFile& file) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    const auto byte = static_cast<std::uint64_t>(slot);
    const Result<bool> marked = file.TryLock(kOurLocks + byte, 1, true);
    if (!marked.ok()) return FileError(marked.error());
    if (!marked.value()) continue;
    const Result<bool> taken = file.TryLock(kSlotLocks + byte, 1, true);
    if (taken.ok() && taken.value()) return slot;
    static_cast<void>(file.Unlock(kOurLocks + byte, 1));
    if (!taken.ok()) return FileError(taken.error());
  }
  return 0;
}

/// Whether the name leads to the file whose slot we hold: another user may have deleted that one
/// and a third made a new one, where the slot may have an entry like ours. Told by a number in the
/// entry, which is written over afterwards.
Result<bool> HasName(Storage& storage, const std::string& path, StoredFile& file, int slot) {
  std::array<std::uint8_t, 8> drawn = {};
  std::random_device device;
  for (std::uint8_t& byte : drawn) byte = static_cast<std::uint8_t>(device());
  const std::uint64_t offset = EntryOffset(slot) + kEntrySize - drawn.size();
  if (const Status wrote = file.WriteAt(offset, drawn); !wrote.ok()) {
    return FileError(wrote.error());
  }
  const Result<std::unique_ptr<StoredFile>> named = storage.Open(path, Sharing::ReadOnly);
  if (!named.ok()) return false;
  std::array<std::uint8_t, 8> found = {};
  return named.value()->ReadAt(offset, found).ok() && found == drawn;
}

Result<std::unique_ptr<StoredFile>> OpenOrCreate(Storage& storage, const std::string& path,
                                                 std::string_view database) {
  Result<std::unique_ptr<StoredFile>> file = storage.Open(path, Sharing::Shared);
  if (file.number() == kFileNotFound) file = storage.Create(path, Sharing::Shared, database);
  return file;
}

/// Whether opening again may help: the last user was deleting the file at this moment.
bool IsPassing(int number) {
  return number == kPermissionDenied || number == kFileAlreadyExists || number == kFileNotFound;
}

}  // namespace

std::string LockFile::PathFor(std::string_view database) {
  constexpr std::string_view kEnding = ".mdb";
  if (database.size() >= kEnding.size() &&
      EqualsIgnoringCase(database.substr(database.size() - kEnding.size()), kEnding)) {
    database.remove_suffix(kEnding.size());
  }
  return std::string(database) + ".ldb";
}

LockFile::LockFile(Storage& storage, std::string path, std::unique_ptr<StoredFile> file, int slot)
    : storage_(storage), path_(std::move(path)), file_(std::move(file)), slot_(slot) {}

Result<std::unique_ptr<LockFile>> LockFile::Enter(Storage& storage, std::string_view database,
                                                  const User& user) {
  std::string path = PathFor(database);
  for (int attempt = 0; attempt < kEnterAttempts; ++attempt) {
    if (attempt > 0) storage.Pause(kEnterPause);
    Result<std::unique_ptr<StoredFile>> file = OpenOrCreate(storage, path, database);
    if (!file.ok() && IsPassing(file.number())) continue;
    if (!file.ok()) return OpeningError(file.error(), path, Sharing::Shared);
    const Result<int> slot = TakeSlot(*file.value());
    if (!slot.ok()) return slot.error();
    if (slot.value() == 0) continue;
    // The file whose slot we hold may have lost its name in between.
    const Result<bool> named = HasName(storage, path, *file.value(), slot.value());
    if (!named.ok()) return named.error();
    if (!named.value()) continue;
    Status written = WriteEntry(*file.value(), slot.value(), user);
    if (!written.ok()) return written.error();
    return std::unique_ptr<LockFile>(
        new LockFile(storage, std::move(path), std::move(file.value()), slot.value()));
  }
  return JetErrorBecause(kDatabaseInUse, "no user slot of its lock file could be taken", database);
}

Result<std::vector<User>> LockFile::UsersOf(Storage& storage, std::string_view database) {
  const std::string path = PathFor(database);
  Result<std::unique_ptr<StoredFile>> file = storage.Open(path, Sharing::ReadOnly);
  if (file.number() == kFileNotFound) return std::vector<User>();
  if (!file.ok()) return OpeningError(file.error(), path, Sharing::ReadOnly);
  return UsersIn(*file.value(), 0);
}

bool LockFile::IsInUse(Storage& storage, std::string_view database) {
  for (int look = 1;; ++look) {
    const Result<std::vector<User>> users = UsersOf(storage, database);
    if (!users.ok() || users.value().empty()) return false;
    if (look == kForeignLooks) return true;
    storage.Pause(kForeignPause);
  }
}

LockFile::~LockFile() {
  // Whoever gets all other slots is alone; nobody can enter while they are held.
  const auto own = static_cast<std::uint64_t>(slot_);
  const auto take = [&](std::uint64_t first, std::uint64_t count) {
    return count == 0 || file_->TryLock(kSlotLocks + first, count, true).value_or(false);
  };
  const bool alone = take(1, own - 1) && take(own + 1, kSlots - own);
  // The slot before the mark, so that no one takes us for a program of another kind.
  static_cast<void>(file_->Unlock(kSlotLocks + own, 1));
  if (!alone) return;
  // A system that deletes no open file wants it closed; one that does must not let anyone in
  // before.
  if (storage_.Delete(path_).ok()) return;
  file_.reset();
  static_cast<void>(storage_.Delete(path_));
}

Result<std::vector<User>> LockFile::Users() { return UsersIn(*file_, slot_); }

Result<bool> LockFile::HasForeignUser() {
  Result<std::vector<int>> slots = OtherSlots(*file_, slot_);
  if (slots.ok()) slots = WithoutMark(*file_, slots.value());
  for (int look = 1; look < kForeignLooks && slots.ok() && !slots.value().empty(); ++look) {
    storage_.Pause(kForeignPause);
    slots = WithoutMark(*file_, slots.value());
  }
  if (!slots.ok()) return slots.error();
  return !slots.value().empty();
}

}  // namespace zent::jet
