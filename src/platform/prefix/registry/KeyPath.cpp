#include "platform/prefix/registry/KeyPath.h"

#include <algorithm>

#include "base/CaseFold.h"
#include "base/Utf.h"
#include "platform/prefix/registry/RegistryEscapes.h"

namespace zent {

Result<KeyPath> ParseKeyPath(std::string_view path) {
  if (!path.empty() && path.front() == '\\') return StandardError(kPathFileAccess);
  KeyPath names;
  for (std::size_t at = 0; at < path.size();) {
    const std::size_t end = std::min(path.find('\\', at), path.size());
    if (end > at) names.push_back(WellFormedText(path.substr(at, end - at)));
    at = end + 1;
  }
  return names;
}

bool HasValidNames(const KeyPath& path) {
  return std::all_of(path.begin(), path.end(), [](const std::string& name) {
    return ToUtf16(name).size() <= kLongestKeyName;
  });
}

bool IsAtOrBelow(const KeyPath& path, const KeyPath& top) {
  return path.size() >= top.size() && std::equal(top.begin(), top.end(), path.begin(), SameName);
}

}  // namespace zent
