#pragma once

#include <memory>
#include <string_view>

#include "platform/FileSystem.h"
#include "platform/VersionResources.h"

namespace zent {

/// Version resources of the machine, read from its program files (32 and 64 bits; a program for
/// 16-bit Windows has none here). A file that is damaged, or made to do damage, is refused or
/// answers nothing.
class PrefixVersionResources : public VersionResources {
 public:
  /// `files` must outlive this.
  explicit PrefixVersionResources(FileSystem& files) : files_(files) {}

  Result<std::unique_ptr<VersionInfo>> Open(std::string_view path) const override;

 private:
  FileSystem& files_;
};

}  // namespace zent
