#include "jet/storage/FileLocks.h"

#include "jet/storage/StorageErrors.h"

namespace zent::jet {
namespace {

constexpr std::uint64_t kWriteByte = 0x80000000;
constexpr std::uint64_t kGateByte = 0x80000001;
constexpr std::uint64_t kReadByte = 0x80000002;

Status StatusOf(const Result<bool>& locked, std::string_view otherwise) {
  if (!locked.ok()) return FileError(locked.error());
  return locked.value() ? Status() : Status(LockError(otherwise));
}

}  // namespace

FileLocks::FileLocks(Storage& storage, StoredFile& file, bool exclusive, Patience patience)
    : storage_(storage), file_(file), exclusive_(exclusive), patience_(patience) {}

Result<bool> FileLocks::Try(std::uint64_t byte, bool exclusive, bool wait) {
  if (exclusive_) return true;
  for (int attempt = 1;; ++attempt) {
    Result<bool> locked = file_.TryLock(byte, 1, exclusive);
    if (!locked.ok() || locked.value() || !wait || attempt >= patience_.attempts) return locked;
    storage_.Pause(patience_.pause);
  }
}

void FileLocks::Free(std::uint64_t byte) {
  if (!exclusive_) static_cast<void>(file_.Unlock(byte, 1));
}

Status FileLocks::LockForReading() {
  constexpr std::string_view kWhy = "another user is saving changes";
  Status passed = StatusOf(Try(kGateByte, false, true), kWhy);
  if (!passed.ok()) return passed;
  Status locked = StatusOf(Try(kReadByte, false, true), kWhy);
  Free(kGateByte);
  reading_ = locked.ok();
  return locked;
}

void FileLocks::UnlockForReading() {
  if (reading_) Free(kReadByte);
  reading_ = false;
}

Status FileLocks::LockForWriting(bool wait) {
  Status locked = StatusOf(Try(kWriteByte, true, wait), "another user has a transaction open");
  writing_ = locked.ok();
  return locked;
}

void FileLocks::UnlockForWriting() {
  if (writing_) Free(kWriteByte);
  writing_ = false;
}

Status FileLocks::LockOutReaders() {
  if (alone_) return {};
  constexpr std::string_view kWhy = "other users are reading";
  Status gate = StatusOf(Try(kGateByte, true, true), kWhy);
  if (!gate.ok()) return gate;
  const bool was_reading = reading_;
  UnlockForReading();
  Status locked = StatusOf(Try(kReadByte, true, true), kWhy);
  alone_ = locked.ok();
  if (alone_) {
    reading_ = was_reading;
    return {};
  }
  // Nobody but us could have taken it exclusively: we hold the write lock.
  reading_ = was_reading && Try(kReadByte, false, true).value_or(false);
  Free(kGateByte);
  return locked;
}

void FileLocks::AdmitReaders(bool reading) {
  if (!alone_) return;
  alone_ = false;
  Free(kReadByte);
  reading_ = reading && Try(kReadByte, false, true).value_or(false);
  Free(kGateByte);
}

}  // namespace zent::jet
