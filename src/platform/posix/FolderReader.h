#pragma once

#include <dirent.h>

#include <memory>
#include <optional>
#include <string>

#include "base/Status.h"

namespace zent {

/// The names in a folder, in the order in which the file system keeps them, without "." and "..".
class FolderReader {
 public:
  /// Starts at the first name. `folder_fd` may be an O_PATH descriptor and is not kept.
  static Result<FolderReader> Open(int folder_fd);

  /// The next name; nothing at the end or on an error.
  std::optional<std::string> Next();
  /// What ended the reading: ok at the end of the folder.
  const Status& status() const { return status_; }

 private:
  struct Closer {
    void operator()(DIR* folder) const { ::closedir(folder); }
  };

  explicit FolderReader(DIR* folder) : folder_(folder) {}

  std::unique_ptr<DIR, Closer> folder_;
  Status status_;
};

}  // namespace zent
