#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zent::testing {

/// One element of the target's item list.
struct LinkItem {
  std::uint8_t kind = 0;  ///< 0x1F the root, 0x23 to 0x2F a drive, 0x31 a folder, 0x32 a file
  std::string ansi_name;  ///< of a folder or file; of a drive its root
  std::string name;       ///< of a folder or file, from its Unicode block
  bool operator==(const LinkItem&) const = default;
};

/// What a link file says.
struct LinkFile {
  std::uint32_t flags = 0;
  std::vector<LinkItem> items;
  std::string path;  ///< of the target, from its ANSI form; empty when there is none
  std::string description;
  std::string working_folder;
  std::string arguments;
  std::string icon;

  /// The target by its items: "C:\Korvo\Korvo.exe".
  std::string PathOfItems() const;
};

/// Reads a link file of MS-SHLLINK, header to last block. Nothing when its sizes and offsets do not
/// hold together to the last byte.
std::optional<LinkFile> ReadLink(std::string_view bytes);

}  // namespace zent::testing
