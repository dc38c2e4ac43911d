#include "platform/prefix/version/PrefixVersionResources.h"

#include <string>
#include <utility>

#include "platform/prefix/version/PeResources.h"
#include "platform/prefix/version/VersionBlock.h"

namespace zent {

Result<std::unique_ptr<VersionInfo>> PrefixVersionResources::Open(std::string_view path) const {
  const Result<std::unique_ptr<File>> file = files_.OpenForReading(path);
  if (!file.ok()) return file.error();
  Result<std::string> resource = ReadVersionResource(*file.value());
  if (!resource.ok()) return resource.error();
  return std::unique_ptr<VersionInfo>(std::make_unique<VersionBlock>(std::move(resource.value())));
}

}  // namespace zent
