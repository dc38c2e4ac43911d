#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"

namespace zent {

/// Attribute bits of a file, as Windows numbers them (FILE_ATTRIBUTE_*). Combined with `|`.
inline constexpr std::uint32_t kAttributeReadOnly = 0x01;
inline constexpr std::uint32_t kAttributeHidden = 0x02;
inline constexpr std::uint32_t kAttributeSystem = 0x04;
inline constexpr std::uint32_t kAttributeFolder = 0x10;
inline constexpr std::uint32_t kAttributeArchive = 0x20;
inline constexpr std::uint32_t kAttributeNormal = 0x80;  ///< only in calls: none of the others

/// One match of FileSystem::Find.
struct FileEntry {
  std::string name;              ///< without its folder, spelled as on disk
  std::uint32_t attributes = 0;  ///< kAttribute bits
  std::uint64_t size = 0;        ///< bytes; 0 for a folder
};

/// A file of the machine, open for reading until destroyed.
class File {
 public:
  virtual ~File() = default;
  /// The present size in bytes.
  virtual Result<std::uint64_t> Size() = 0;
  /// Fills `buffer` from `offset` (bytes from the start) on. Fewer bytes than asked, or none, are
  /// returned only at the end of the file.
  virtual Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> buffer) = 0;
};

/// Files of the machine, with the behaviour of the Windows calls named below.
///
/// Paths are Windows paths in UTF-8: a drive letter, backslashes (slashes are taken too), any case.
/// A relative path counts from the current folder, which is the package folder. Trailing dots and
/// blanks of a name do not count, ".." never climbs above the drive's root, and no name, link or
/// ".." leads outside the machine's drives: such a path is kPathNotFound. A name that the system
/// cannot take (a wildcard, one of <>"|, a control, more than 259 characters) is kBadFileName or
/// kPathFileAccess.
///
/// Errors of every call: kFileNotFound, kPathNotFound (a folder of the path is missing),
/// kPermissionDenied (in use), kPathFileAccess (write-protected, no right, a folder where a file is
/// wanted), kBadFileName, kDiskFull, kDeviceIoError.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// The full form of a path (GetFullPathName): drive, backslashes, no "." and "..", whether or not
  /// anything of that name exists. A trailing backslash stays.
  virtual Result<std::string> FullPath(std::string_view path) = 0;

  /// The attribute bits of a file or folder (GetFileAttributes).
  virtual Result<std::uint32_t> Attributes(std::string_view path) = 0;
  /// Sets read-only, hidden and system as given and clears those not given (SetFileAttributes).
  virtual Status SetAttributes(std::string_view path, std::uint32_t attributes) = 0;

  /// All files and folders of any attribute whose name matches the last part of `pattern`
  /// (FindFirstFile): `*` and `?` as the system takes them, on long names only, without regard to
  /// case. Sorted by name without regard to case; "." and ".." are left out. No match is an empty
  /// list; a missing folder is kPathNotFound.
  virtual Result<std::vector<FileEntry>> Find(std::string_view pattern) = 0;

  /// Opens an existing file. Others may read, write and replace it meanwhile; what was opened stays
  /// readable.
  virtual Result<std::unique_ptr<File>> OpenForReading(std::string_view path) = 0;

  /// Makes `contents` (bytes) the whole contents of the file, which is created when missing. The
  /// old contents or the new ones are there at every instant: written to a sibling, flushed, put in
  /// its place. The attributes, except read-only, which is refused, and the spelling of an existing
  /// name stay.
  virtual Status Write(std::string_view path, std::string_view contents) = 0;

  /// Copies a file over `target` (CopyFile without fail-if-exists): contents, times and attributes.
  /// A read-only target is kPathFileAccess, one in use kPermissionDenied. The target is put in
  /// place whole: never left half-written.
  virtual Status Copy(std::string_view source, std::string_view target) = 0;

  /// Renames a file or folder (MoveFile); a file may move to another drive. An existing `new_path`
  /// is kFileAlreadyExists, a file in use kPermissionDenied.
  virtual Status Move(std::string_view old_path, std::string_view new_path) = 0;

  /// Puts the file `source` in the place of the existing file `target` of the same folder, in one
  /// step (MoveFileEx with replace-existing and write-through): at every instant the name stands
  /// for the old file or for the new one. The attributes and the spelling of `target` stay; nothing
  /// is copied. A missing file of either name is kFileNotFound, a read-only target kPathFileAccess,
  /// a file in use kPermissionDenied: both are there then, the target as it was.
  virtual Status Replace(std::string_view source, std::string_view target) = 0;

  /// Deletes one file (DeleteFile): no wildcard. A read-only file is kPathFileAccess.
  virtual Status Delete(std::string_view path) = 0;

  /// Creates the last level only (CreateDirectory). A missing parent is kPathNotFound, an existing
  /// file or folder of that name kPathFileAccess.
  virtual Status CreateFolder(std::string_view path) = 0;
};

/// The whole contents of a file, in bytes. A file above `limit` bytes is kOutOfStringSpace.
Result<std::string> ReadWholeFile(FileSystem& files, std::string_view path,
                                  std::uint64_t limit = std::uint64_t{1} << 30U);

}  // namespace zent
