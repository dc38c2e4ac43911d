#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/prefix/files/Drives.h"
#include "platform/prefix/files/LeftSiblings.h"
#include "platform/prefix/files/PathWalk.h"

namespace zent {

/// The files of a machine that is kept on disk. Beside what the port says:
///
/// - Nothing outside the folders of the drives is read, written or listed, whatever a name or link
///   says (see WalkTo). Pipes, sockets and devices are kPathFileAccess and never opened.
/// - Names on disk that no Windows path can hold are not listed, as no call could be made on them.
/// - A file that any process has open counts as in use, whatever that process would allow.
/// - What a killed run left half-written in a folder goes before a file is first put there.
/// - A hidden file is not copied over: kPathFileAccess, as CopyFile has it.
class PrefixFileSystem : public FileSystem {
 public:
  /// `drives` outlives this; `current_folder` is the full path of the package folder.
  PrefixFileSystem(const Drives& drives, std::string current_folder);

  Result<std::string> FullPath(std::string_view path) override;
  Result<std::uint32_t> Attributes(std::string_view path) override;
  Status SetAttributes(std::string_view path, std::uint32_t attributes) override;
  Result<std::vector<FileEntry>> Find(std::string_view pattern) override;
  Result<std::unique_ptr<File>> OpenForReading(std::string_view path) override;
  Status Write(std::string_view path, std::string_view contents) override;
  Status Copy(std::string_view source, std::string_view target) override;
  Status Move(std::string_view old_path, std::string_view new_path) override;
  Status Replace(std::string_view source, std::string_view target) override;
  Status Delete(std::string_view path) override;
  Status CreateFolder(std::string_view path) override;

  /// Where an existing file or folder lies on the host, links resolved: for programs that the host
  /// starts.
  Result<std::filesystem::path> HostPath(std::string_view path);
  /// Where a file lies on the host by its own name, or would lie: its folder is there. A link is
  /// the link itself. For what is made, deleted or renamed there.
  Result<std::filesystem::path> HostTarget(std::string_view path);

 private:
  Result<Place> Locate(std::string_view path) const;
  /// The place of an existing file or folder; a pipe and the like is kPathFileAccess.
  Result<Place> LocateExisting(std::string_view path) const;
  /// The place of an existing file; a folder is kPathFileAccess.
  Result<Place> LocateFile(std::string_view path) const;
  /// Where a file is to be put: the place of a file or of nothing.
  Result<Place> LocateTarget(std::string_view path) const;
  Result<std::vector<FileEntry>> Matches(const Place& folder, const SearchPath& search) const;

  const Drives& drives_;
  std::string current_folder_;
  LeftSiblings left_siblings_;
};

}  // namespace zent
