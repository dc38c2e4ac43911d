#include "platform/win32/registry/KeyPath.h"

#include <algorithm>

#include "base/Utf.h"
#include "platform/win32/AnsiText.h"

namespace zent {
namespace {

constexpr std::size_t kLongestKeyName = 255;  // UTF-16 units

}  // namespace

Result<std::string> AnsiKeyPath(std::string_view path, int impossible) {
  // Said by us: below HKEY_CLASSES_ROOT some systems take it.
  if (path.starts_with('\\')) return StandardError(kPathFileAccess);
  std::string joined;
  while (!path.empty()) {
    const std::string_view name = path.substr(0, path.find('\\'));
    path.remove_prefix(std::min(name.size() + 1, path.size()));
    if (name.empty()) continue;
    if (ToUtf16(name).size() > kLongestKeyName) return StandardError(impossible);
    if (!joined.empty()) joined += '\\';
    joined += name;
  }
  Result<std::string> ansi = AnsiOf(joined);
  if (!ansi.ok()) return StandardError(impossible);
  return ansi;
}

}  // namespace zent
