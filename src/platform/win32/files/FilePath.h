#pragma once

#include <string>
#include <string_view>

#include "base/Status.h"

namespace zent {

/// A full path that leads to one place, however often the system reads it: drive or share,
/// backslashes, nothing that it would take off or climb up.
struct FilePath {
  std::string text;  ///< in UTF-8
  std::string ansi;  ///< as the ANSI calls take it

  bool names_a_folder() const { return text.back() == '\\'; }
  /// The path without its last part, with a backslash at the end.
  std::string_view folder() const;
  std::string_view name() const;
};

/// A search pattern taken apart.
struct FilePattern {
  FilePath folder;      ///< with a backslash at the end
  std::string pattern;  ///< the last part, for Wildcard; empty after a trailing backslash
};

/// The full form of `path`, as GetFullPathName gives it. The current folder is the one given here,
/// not that of the process, which other parts of the program may change; the current folder of
/// another drive is its root. An empty path is kPathNotFound, a full form above 259 characters
/// kPathFileAccess, a character outside the system's code page kBadFileName.
Result<std::string> FullPathOf(std::string_view path, std::string_view current_folder);

/// The full form of `path` for a call on files. Beside what the system refuses itself: a device, an
/// alternate stream of a file ("a.txt:x") and a literal path (\\?\) that is no plain path on a
/// drive are kBadFileName; a drive that is not there and a folder whose name is dots are
/// kPathNotFound.
Result<FilePath> ParseFilePath(std::string_view path, std::string_view current_folder);

/// As ParseFilePath for a path whose last part may hold wildcards.
Result<FilePattern> ParseFilePattern(std::string_view path, std::string_view current_folder);

/// True for a name of a folder's entry that a path can lead to: one that the code page holds, that
/// no sign of a path or wildcard is part of, and that is no device.
bool IsReachableName(std::string_view name);

}  // namespace zent
