#pragma once

#include <sys/stat.h>

#include <functional>
#include <optional>
#include <string>

#include "base/Status.h"
#include "platform/prefix/registry/RegistryFile.h"

namespace zent {

/// Makes the edit to store, given the file as it is at that moment.
using RegistryEditor = std::function<Result<RegistryEdit>(const RegistryFile& file)>;

/// One registry file on disk, and what was loaded of it.
class RegistryStore {
 public:
  /// The file `name` of the machine's folder, of which `folder_fd` is an open descriptor that
  /// outlives this; `shown_name` is what error texts call the file.
  RegistryStore(int folder_fd, std::string name, std::string shown_name);

  /// Reads the file, or reads it again; on an error what was loaded before stays. A symbolic link
  /// and anything else that is no ordinary file are kPathFileAccess.
  Status Load();
  bool loaded() const { return file_.has_value(); }
  /// Only when loaded().
  const RegistryFile& file() const { return *file_; }

  /// kPathFileAccess when nobody has permission to write the file, or we have none. The bits count
  /// for the superuser too.
  Status CheckWritable() const;

  /// Edits the file and replaces it on disk, atomically and flushed. When the file on disk is no
  /// longer the one loaded, it is read again first. An empty edit writes nothing. On an error the
  /// file is as it was, here and on disk. Two programs that save at a time do so one after the
  /// other.
  Status Save(const RegistryEditor& editor);

 private:
  /// What tells one version of the file from another.
  struct Version {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    timespec modified = {};

    static Version Of(const struct stat& status);
    bool operator==(const Version& other) const;
  };

  Status SaveLocked(const struct stat& on_disk, const RegistryEditor& editor);
  void NoteVersion();
  RuntimeError ErrorWithName(int number) const;

  int folder_fd_;
  std::string name_;
  std::string shown_name_;
  std::optional<RegistryFile> file_;
  std::optional<Version> version_;  ///< of the file on disk that `file_` equals, when known
};

}  // namespace zent
