#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "base/Status.h"
#include "platform/posix/UniqueFd.h"
#include "platform/prefix/files/Drives.h"
#include "platform/prefix/files/WindowsPath.h"

namespace zent {

/// A name in an open folder: what every call on a file is made with, so that nothing that happens
/// to the way there can lead the call elsewhere.
struct FolderEntry {
  UniqueFd folder;   ///< opened with O_PATH
  std::string name;  ///< "." for the root of a drive
};

/// Where a path leads.
struct Place {
  /// The file or folder itself, spelled as on disk; as given when nothing of that name is there.
  FolderEntry entry;
  /// The symbolic link by which the path came to `entry`, when its last part names one.
  std::optional<FolderEntry> link;
  UniqueFd object;        ///< opened with O_PATH; none when nothing is there
  struct stat info = {};  ///< of `object`

  char drive = 0;                ///< of the path
  std::string asked_name;        ///< the last part of the path, spelled as there
  bool asked_as_folder = false;  ///< the path ends with a backslash

  bool exists() const { return object.ok(); }
  bool IsFolder() const { return exists() && S_ISDIR(info.st_mode); }
  bool IsFile() const { return exists() && S_ISREG(info.st_mode); }
  /// What a rename or a delete is about: the link rather than what it leads to.
  const FolderEntry& named() const { return link ? *link : entry; }
};

/// Goes from the drive's root to where `path` leads, part by part. A name is found as it is
/// spelled, otherwise the first of the folder that is the same without regard to case. The last
/// part may be missing; a missing or other part before it is kPathNotFound.
///
/// Symbolic links are followed as long as they stay below the root of the drive; one that leads
/// elsewhere, too many of them or a circle are kPathNotFound. With the drives' follow_profile_links
/// the links USERS\NAME\Desktop, Documents, Downloads, Music, Pictures, Videos and "My ..." may
/// lead anywhere; behind such a link its target is the root that nothing leaves.
Result<Place> WalkTo(const Drives& drives, const WindowsPath& path);

}  // namespace zent
