#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "base/Status.h"
#include "platform/win32/files/FilePath.h"

namespace zent {

/// What becomes of a file that has the name already.
enum class OldFile { Replace, Keep };

/// A new file in the folder of the one whose place it takes once it is complete and flushed. One
/// that is not put in place is removed, unless it was there before (OfFile).
///
/// Its name is about twenty characters long: a folder that has no room for it below the 259
/// characters of a path takes no file, kPathFileAccess.
class Win32Sibling {
 public:
  /// A sibling of `target` with these contents.
  static Result<Win32Sibling> OfContents(const FilePath& target, std::string_view contents);
  /// A sibling of `target` with the contents, times and streams of the file `source`. Its
  /// attributes are not yet those of the source.
  static Result<Win32Sibling> OfCopy(const FilePath& target, const FilePath& source);
  /// The existing file `source` itself, flushed; it is not read-only any more.
  static Result<Win32Sibling> OfFile(const FilePath& source);
  Win32Sibling(Win32Sibling&& other) noexcept
      : path_(std::exchange(other.path_, {})), is_made_(other.is_made_) {}
  Win32Sibling& operator=(Win32Sibling&&) = delete;
  Win32Sibling(const Win32Sibling&) = delete;
  Win32Sibling& operator=(const Win32Sibling&) = delete;
  ~Win32Sibling();

  /// Lets those use it who may use the existing file `old`, as far as the system lets us.
  void TakeRightsOf(const FilePath& old);
  Status SetAttributes(std::uint32_t attributes);

  /// Renames to `target`. A target in use is kPermissionDenied; with OldFile::Keep an existing one
  /// is kFileAlreadyExists.
  Status PutInPlace(const FilePath& target, OldFile old_file);

 private:
  explicit Win32Sibling(std::string path) : path_(std::move(path)) {}

  std::string path_;  // ANSI; empty once in place
  bool is_made_ = true;
};

/// Removes the half-written files that a killed run left behind, from each folder once: before the
/// first file of this run is put there. A folder that nothing is put into is not searched.
class LeftSiblings {
 public:
  /// From the folder of `target`. No sibling of ours is there yet.
  void RemoveBeside(const FilePath& target);

 private:
  std::set<std::string> searched_;  // folders, folded
};

}  // namespace zent
