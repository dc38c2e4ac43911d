#pragma once

#include <filesystem>
#include <string_view>

#include "base/Status.h"

namespace zent {

/// Finds programs of the machine on the host.
class ProgramLocator {
 public:
  virtual ~ProgramLocator() = default;
  /// The real host path (absolute, links resolved) of the existing file of this Windows path;
  /// kFileNotFound, or kPathNotFound when a folder of the path is missing or the path leads out of
  /// the machine.
  virtual Result<std::filesystem::path> HostPath(std::string_view windows_path) = 0;
};

}  // namespace zent
