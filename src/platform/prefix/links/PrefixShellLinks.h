#pragma once

#include <string_view>

#include "platform/FileSystem.h"
#include "platform/ShellLinks.h"

namespace zent {

/// Shell links of the machine, written through its FileSystem in the format of Windows.
class PrefixShellLinks : public ShellLinks {
 public:
  /// `files` outlives this.
  explicit PrefixShellLinks(FileSystem& files) : files_(files) {}

  Status Create(std::string_view link_file, const ShellLink& link) override;

 private:
  FileSystem& files_;
};

}  // namespace zent
