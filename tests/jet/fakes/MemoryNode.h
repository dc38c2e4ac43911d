#pragma once

#include <algorithm>
#include <random>

#include "jet/fakes/MemoryStorage.h"

namespace zent::jet::testing {

inline constexpr std::uint64_t kBlock = 512;

class MemoryFile;

/// Faults and counts, which all files of a machine share.
struct MemoryStorage::Machine {
  int calls = 0;
  int flushes = 0;
  int reads = 0;
  int fail_at = 0;
  int fail_number = 0;
  int stop_at = 0;
  bool stopped = false;
  bool forbids_writing = false;
  std::optional<std::uint64_t> spoiled;  ///< where nothing can be read
  std::optional<std::uint64_t> space;
  std::uint64_t used = 0;

  /// Called first by every changing call.
  Status Change();
  /// Called first by every other call.
  Status Look() const { return stopped ? Status(StandardError(kDeviceIoError)) : Status(); }
};

/// A file, whatever its name.
struct MemoryStorage::Node {
  struct Change {
    bool is_resize = false;
    std::uint64_t at = 0;  ///< offset, or the new size
    std::string bytes;
  };
  struct Lock {
    const MemoryFile* owner;
    std::uint64_t first;
    std::uint64_t end;
    bool exclusive;
  };

  std::string now;
  std::string durable;
  std::vector<Change> pending;  ///< since the last flush, in blocks
  std::vector<std::pair<const MemoryFile*, Sharing>> openers;
  std::vector<Lock> locks;

  /// What is on disk after that loss.
  std::string After(const PowerLoss& loss, std::mt19937& random) const;
};

/// Whether change `index` of `count` is among those that a loss keeps.
bool Keeps(const PowerLoss& loss, std::size_t index, std::size_t count, std::mt19937& random);

class MemoryFile final : public StoredFile {
 public:
  MemoryFile(MemoryStorage::Machine& machine, MemoryStorage::NodePointer node, Sharing sharing);
  ~MemoryFile() override;

  Result<std::uint64_t> Size() override;
  Result<std::size_t> ReadAt(std::uint64_t offset, MutableBytes buffer) override;
  Status WriteAt(std::uint64_t offset, ByteView bytes) override;
  Status Resize(std::uint64_t size) override;
  Status Flush() override;
  Result<bool> TryLock(std::uint64_t offset, std::uint64_t length, bool exclusive) override;
  Status Unlock(std::uint64_t offset, std::uint64_t length) override;

 private:
  Status Change();
  /// `size`, or what space allows of it.
  std::uint64_t Allowed(std::uint64_t size) const;
  void SetSize(std::uint64_t size);

  MemoryStorage::Machine& machine_;
  MemoryStorage::NodePointer node_;
  Sharing sharing_;
};

}  // namespace zent::jet::testing
