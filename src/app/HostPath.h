#pragma once

#include <filesystem>
#include <string>

namespace zent {

/// The path of a file of the host, from UTF-8. (From plain chars Windows' library would take the
/// text of the C locale.)
inline std::filesystem::path HostPath(const std::string& utf8) {
  return std::u8string(utf8.begin(), utf8.end());
}

/// The UTF-8 of a path of the host.
inline std::string TextOf(const std::filesystem::path& path) {
  const std::u8string utf8 = path.u8string();
  return {utf8.begin(), utf8.end()};
}

}  // namespace zent
