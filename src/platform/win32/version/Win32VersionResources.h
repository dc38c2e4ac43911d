#pragma once

#include <memory>
#include <string_view>

#include "platform/VersionResources.h"

namespace zent {

/// Version resources of program files, read and searched by the system. A resource that is damaged,
/// or made to do damage, is answered from within the bytes that were read.
class Win32VersionResources : public VersionResources {
 public:
  Result<std::unique_ptr<VersionInfo>> Open(std::string_view path) const override;
};

}  // namespace zent
