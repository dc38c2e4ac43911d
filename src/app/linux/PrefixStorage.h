#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "jet/host/posix/PosixStorage.h"
#include "jet/storage/Storage.h"
#include "platform/prefix/files/PrefixFileSystem.h"

namespace zent {

/// The files of a machine on disk for the Access engine: full Windows paths, which never lead out
/// of the machine's drives. A file with the read-only attribute is opened to be read alone, whoever
/// runs the program.
class PrefixStorage final : public jet::Storage {
 public:
  /// `files` outlives this.
  explicit PrefixStorage(PrefixFileSystem& files) : files_(files) {}

  Result<std::unique_ptr<jet::StoredFile>> Open(std::string_view path,
                                                jet::Sharing sharing) override;
  Result<std::unique_ptr<jet::StoredFile>> Create(std::string_view path, jet::Sharing sharing,
                                                  std::string_view like) override;
  Status Delete(std::string_view path) override;
  Result<bool> Exists(std::string_view path) override;
  Status Rename(std::string_view path, std::string_view new_path) override;
  Status FlushFolder(std::string_view path) override;
  void Pause(std::chrono::milliseconds time) override { disk_.Pause(time); }

 private:
  PrefixFileSystem& files_;
  jet::PosixStorage disk_;
};

}  // namespace zent
