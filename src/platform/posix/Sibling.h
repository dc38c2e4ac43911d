#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/Status.h"
#include "platform/posix/UniqueFd.h"

namespace zent {

/// What becomes of a file that has the name already.
enum class OldFile { Replace, Keep };

/// A new file called ".zent-PROCESS-NUMBER.tmp" that takes the place of another in the same folder
/// once it is complete. One that is not put in place is removed.
class Sibling {
 public:
  /// Creates the file, empty. `folder_fd` outlives it; `mode` is subject to the umask.
  static Result<Sibling> Create(int folder_fd, mode_t mode);
  Sibling(Sibling&& other) noexcept;
  Sibling& operator=(Sibling&&) = delete;
  Sibling(const Sibling&) = delete;
  Sibling& operator=(const Sibling&) = delete;
  ~Sibling();

  /// Open for writing, at any mode.
  int fd() const { return fd_.get(); }
  int folder_fd() const { return folder_fd_; }
  const std::string& name() const { return name_; }

  /// Flushes the contents, renames to `name` and flushes the folder. With OldFile::Keep an existing
  /// `name` is kFileAlreadyExists.
  Status PutInPlace(const std::string& name, OldFile old_file = OldFile::Replace);

 private:
  Sibling(int folder_fd, std::string name, UniqueFd fd)
      : folder_fd_(folder_fd), name_(std::move(name)), fd_(std::move(fd)) {}

  int folder_fd_;
  std::string name_;  // empty once in place
  UniqueFd fd_;
};

/// True for a name that a Sibling may have.
bool IsSiblingName(std::string_view name);

/// The process that made the sibling `name`, as its name tells; nothing for any other name.
std::optional<pid_t> MakerOfSibling(std::string_view name);

/// Makes names in the folder safe. Their contents are safe already: a folder that cannot be flushed
/// only delays the new names.
void FlushFolder(int folder_fd);

/// Renames unless `to` exists; the errno of a failure, EEXIST then, or 0.
int RenameToFreeName(int from_folder, const std::string& from, int to_folder,
                     const std::string& to);

}  // namespace zent
