#pragma once

#include <memory>
#include <string_view>

#include "jet/storage/Storage.h"

namespace zent::jet {

/// Storage over the files of Windows, whose sharing and byte-range locks are what the engine's are
/// made after. Paths are those of CreateFile. Creations and renames need no flush of the folder:
/// the file system's own journal keeps their order.
class Win32Storage final : public Storage {
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
