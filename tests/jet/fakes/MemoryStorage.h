#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/storage/Storage.h"

namespace zent::jet::testing {

/// What a machine that loses its power makes of what was not flushed. Writes are taken apart into
/// blocks of 512 bytes.
struct PowerLoss {
  enum Kind : std::uint8_t {
    KeepsAll,     ///< everything had reached the disk: also what killing the process leaves
    LosesAll,     ///< nothing had
    KeepsFirst,   ///< the first half of the blocks, so that the write in the middle is torn
    KeepsLast,    ///< the second half
    KeepsOdd,     ///< every other block
    KeepsRandom,  ///< each block by the toss of a coin
  };
  Kind kind = KeepsAll;
  unsigned seed = 0;
};

/// Files in memory that also know what of them is on disk. Changing calls are WriteAt, Resize,
/// Flush, Create, Delete, Rename and FlushFolder; they are counted from 1, by this object.
class MemoryStorage final : public Storage {
 public:
  MemoryStorage();
  ~MemoryStorage() override;
  MemoryStorage(const MemoryStorage&) = delete;
  MemoryStorage& operator=(const MemoryStorage&) = delete;

  /// A file that is on disk.
  void Put(std::string_view path, std::string_view bytes);
  /// What a reader gets now; empty when there is no such file.
  std::string Bytes(std::string_view path) const;
  bool Has(std::string_view path) const;
  std::vector<std::string> Names() const;

  /// The n-th changing call from now on fails and does nothing; later ones work.
  void FailAt(int call, int error_number);
  /// As FailAt, and every later call fails as well, reading included: the machine has stopped.
  void StopAt(int call);
  bool stopped() const;
  /// The byte at `offset` of a file cannot be read, nor any together with it (kDeviceIoError).
  void SpoilAt(std::uint64_t offset);
  /// Files cannot grow beyond so many bytes altogether; a write gets as far as there is room.
  void LimitSpace(std::uint64_t bytes);
  /// Opening for writing, creating and deleting are kPathFileAccess.
  void ForbidWriting();
  /// As Windows has it: a file that is open cannot be deleted (kPermissionDenied).
  bool keeps_open_files = false;
  /// Called by Pause: what others do meanwhile.
  std::function<void()> on_pause;

  int changing_calls() const;
  int flushes() const;
  int reads() const;
  int pauses() const { return pauses_; }

  /// The disk of the stopped machine, in a new one.
  std::unique_ptr<MemoryStorage> AfterPowerLoss(const PowerLoss& loss) const;

  Result<std::unique_ptr<StoredFile>> Open(std::string_view path, Sharing sharing) override;
  Result<std::unique_ptr<StoredFile>> Create(std::string_view path, Sharing sharing,
                                             std::string_view like) override;
  Status Delete(std::string_view path) override;
  Result<bool> Exists(std::string_view path) override;
  Status Rename(std::string_view path, std::string_view new_path) override;
  Status FlushFolder(std::string_view path) override;
  void Pause(std::chrono::milliseconds time) override;

 private:
  friend class MemoryFile;
  struct Node;
  struct Machine;
  using NodePointer = std::shared_ptr<Node>;

  /// A name that was given or taken and is not on disk yet.
  struct NameChange {
    std::string path;
    NodePointer node;  ///< null: taken
  };
  void SetName(std::string_view path, NodePointer node);

  std::unique_ptr<Machine> machine_;
  std::map<std::string, NodePointer, std::less<>> names_;
  std::map<std::string, NodePointer, std::less<>> durable_names_;
  std::vector<NameChange> name_changes_;
  int pauses_ = 0;
};

}  // namespace zent::jet::testing
