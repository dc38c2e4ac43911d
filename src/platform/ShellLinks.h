#pragma once

#include <string>
#include <string_view>

#include "base/Status.h"

namespace zent {

/// What a shell link (a shortcut) points to.
struct ShellLink {
  std::string target;               ///< full Windows path of a program, document or folder
  std::string arguments = {};       ///< as they follow the target on a command line
  std::string working_folder = {};  ///< where the target is started; empty: wherever
};

/// Shell link files of the machine (IShellLink with IPersistFile).
class ShellLinks {
 public:
  virtual ~ShellLinks() = default;

  /// Writes the link file at the full path `link_file` ("C:\...\Korvo.lnk"), in place of one that
  /// is there. The target need not exist. Errors: those of FileSystem::Write; kBadFileName for a
  /// target that is no path on a drive, or too long for a link.
  virtual Status Create(std::string_view link_file, const ShellLink& link) = 0;
};

}  // namespace zent
