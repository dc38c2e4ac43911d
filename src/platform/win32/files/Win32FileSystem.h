#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/win32/files/FilePath.h"
#include "platform/win32/files/Sibling.h"

namespace zent {

/// The files of the Windows on which the program runs, by the ANSI calls. Beside what the port
/// says:
///
/// - A path on a share, \\server\share\..., is taken as the system takes it.
/// - Names with a character that the system's code page lacks are not listed, and kBadFileName in a
///   path: the calls would take them for other names.
/// - A file in use is one that the system does not let us replace, delete or rename. Put in place
///   whole, a file also cannot replace one whose user would share writing into it.
/// - What a killed run left half-written in a folder goes before a file is first put there.
/// - A hidden file is not copied over: kPathFileAccess, as CopyFile has it.
/// - Who may use a file that is replaced stays as it was.
/// - A symbolic link that is written to or copied over becomes a file.
class Win32FileSystem : public FileSystem {
 public:
  /// `current_folder` is the full path of the package folder. The current folder of the process is
  /// neither used nor changed: it is no part of any path that the system is given.
  explicit Win32FileSystem(std::string current_folder);

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

 private:
  /// Where a file is to be put: the place of a file or of nothing.
  struct Target {
    FilePath path;  ///< spelled as on disk
    std::optional<std::uint32_t> old_attributes;
  };

  Result<FilePath> Parse(std::string_view path) const;
  /// The path of an existing file; a folder is kPathFileAccess.
  Result<FilePath> LocateFile(std::string_view path) const;
  Result<Target> LocateTarget(std::string_view path) const;
  /// What keeps the old file, if there is one, from being replaced.
  static Status CheckOld(const Target& target);
  /// Puts a complete sibling in place, with these attributes and the rights of the old file.
  static Status PutInPlace(const Target& target, Win32Sibling& sibling, std::uint32_t attributes);
  /// Copies and deletes: a file that goes to another drive.
  Status MoveByCopy(const FilePath& from, const FilePath& to, std::uint32_t attributes);

  std::string current_folder_;
  LeftSiblings left_siblings_;
};

}  // namespace zent
