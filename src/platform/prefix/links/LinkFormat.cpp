#include "platform/prefix/links/LinkFormat.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/CodePage.h"
#include "base/Utf.h"

namespace zent {
namespace {

// Header (MS-SHLLINK 2.1).
constexpr std::uint32_t kHeaderSize = 0x4C;
constexpr std::uint32_t kHasItems = 0x01;
constexpr std::uint32_t kHasPath = 0x02;
constexpr std::uint32_t kHasWorkingFolder = 0x10;
constexpr std::uint32_t kHasArguments = 0x20;
constexpr std::uint32_t kIsUnicode = 0x80;
constexpr std::uint32_t kShowNormal = 1;
constexpr std::size_t kTimes = 24;           // three times of 8 bytes
constexpr std::size_t kHeaderReserved = 12;  // hot key and reserved fields

// Class identifiers as they lie in a file: {00021401-0000-0000-C000-000000000046} of a link,
// {20D04FE0-3AEA-1069-A2D8-08002B30309D} of "My Computer".
constexpr std::string_view kLinkClass("\x01\x14\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 16);
constexpr std::string_view kMyComputerClass(
    "\xE0\x4F\xD0\x20\xEA\x3A\x69\x10\xA2\xD8\x08\0\x2B\x30\x30\x9D", 16);

// Shell items: the layout that Windows XP writes and all later systems read.
constexpr std::uint8_t kRootItem = 0x1F;
constexpr std::uint8_t kMyComputerOrder = 0x50;
constexpr std::uint8_t kDriveItem = 0x2F;
constexpr std::size_t kDriveItemNameSize = 22;
constexpr std::uint8_t kFolderItem = 0x31;
constexpr std::uint8_t kFileItem = 0x32;
constexpr std::uint16_t kFolderAttribute = 0x10;
constexpr std::uint16_t kNameBlockVersion = 3;
constexpr std::uint32_t kNameBlockSignature = 0xBEEF0004;
constexpr std::uint16_t kNameBlockNameOffset = 0x14;

// Path of the target (MS-SHLLINK 2.3).
constexpr std::uint32_t kPathHeaderSize = 0x1C;
constexpr std::uint32_t kOnDrive = 0x01;  // volume and local path are given
constexpr std::uint32_t kVolumeSize = 0x11;
constexpr std::uint32_t kFixedDrive = 3;
constexpr std::uint32_t kVolumeLabelOffset = 0x10;

constexpr std::size_t kLargestCount = 0xFFFF;

/// Bytes in the order of the format, little-endian.
class Bytes {
 public:
  void U8(std::uint8_t value) { data_.push_back(static_cast<char>(value)); }
  void U16(std::size_t value) {
    U8(static_cast<std::uint8_t>(value & 0xFFU));
    U8(static_cast<std::uint8_t>((value >> 8U) & 0xFFU));
  }
  void U32(std::size_t value) {
    U16(value & 0xFFFFU);
    U16((value >> 16U) & 0xFFFFU);
  }
  void Zeros(std::size_t count) { data_.append(count, '\0'); }
  void Raw(std::string_view bytes) { data_ += bytes; }
  void Utf16(std::string_view utf8) {
    for (const char16_t unit : ToUtf16(utf8)) U16(unit);
  }

  std::size_t size() const { return data_.size(); }
  const std::string& data() const { return data_; }

 private:
  std::string data_;
};

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

bool IsDrivePath(std::string_view path) {
  return path.size() >= 3 && std::isalpha(static_cast<unsigned char>(path[0])) != 0 &&
         path[1] == ':' && IsSeparator(path[2]);
}

/// The names of a path behind its drive.
std::vector<std::string_view> NamesOf(std::string_view path) {
  std::vector<std::string_view> names;
  std::size_t start = 3;
  while (start < path.size()) {
    const std::size_t end = std::min(path.find_first_of("\\/", start), path.size());
    if (end > start) names.push_back(path.substr(start, end - start));
    start = end + 1;
  }
  return names;
}

void AddItem(Bytes& list, const Bytes& item) {
  list.U16(item.size() + 2);
  list.Raw(item.data());
}

Bytes MyComputerItem() {
  Bytes item;
  item.U8(kRootItem);
  item.U8(kMyComputerOrder);
  item.Raw(kMyComputerClass);
  return item;
}

Bytes DriveItem(char letter) {
  Bytes item;
  item.U8(kDriveItem);
  item.U8(static_cast<std::uint8_t>(letter));
  item.Raw(":\\");
  item.Zeros(kDriveItemNameSize - 3);
  return item;
}

/// One folder or file: its ANSI name in the item itself, its Unicode name in a block behind it.
Bytes NameItem(std::string_view name, bool is_folder) {
  Bytes item;
  item.U8(is_folder ? kFolderItem : kFileItem);
  item.U8(0);
  item.U32(0);  // size
  item.U32(0);  // time of the last change
  item.U16(is_folder ? kFolderAttribute : 0);
  item.Raw(ToAnsi(name));
  item.U8(0);
  if (item.size() % 2 != 0) item.U8(0);

  Bytes block;
  block.U16(kNameBlockVersion);
  block.U32(kNameBlockSignature);
  block.U32(0);  // time of creation
  block.U32(0);  // time of the last use
  block.U16(kNameBlockNameOffset);
  block.U16(0);  // no localised name
  block.Utf16(name);
  block.U16(0);
  block.U16(item.size() + 2);  // where the block begins, counted from the item's size field

  item.U16(block.size() + 2);
  item.Raw(block.data());
  return item;
}

Bytes ItemList(std::string_view target, bool target_is_folder) {
  Bytes list;
  AddItem(list, MyComputerItem());
  AddItem(list, DriveItem(target.front()));
  const std::vector<std::string_view> names = NamesOf(target);
  for (std::size_t index = 0; index < names.size(); ++index) {
    const bool is_last = index + 1 == names.size();
    AddItem(list, NameItem(names[index], !is_last || target_is_folder));
  }
  list.U16(0);
  return list;
}

/// The path in the ANSI code page; nothing when that has no letter for one of its characters. A
/// shell believes this path before the items, so a wrong one would be worse than none.
std::optional<Bytes> PathBlock(std::string_view target) {
  const std::string ansi = ToAnsi(target);
  if (FromAnsi(ansi) != target) return std::nullopt;
  const std::size_t path = kPathHeaderSize + kVolumeSize;
  const std::size_t suffix = path + ansi.size() + 1;

  Bytes block;
  block.U32(suffix + 1);  // size of the block
  block.U32(kPathHeaderSize);
  block.U32(kOnDrive);
  block.U32(kPathHeaderSize);  // where the volume begins
  block.U32(path);
  block.U32(0);  // no network path
  block.U32(suffix);
  block.U32(kVolumeSize);
  block.U32(kFixedDrive);
  block.U32(0);  // serial number
  block.U32(kVolumeLabelOffset);
  block.U8(0);  // label
  block.Raw(ansi);
  block.U8(0);
  block.U8(0);  // suffix
  return block;
}

void AddHeader(Bytes& file, const ShellLink& link, bool has_path) {
  std::uint32_t flags = kHasItems | kIsUnicode;
  if (has_path) flags |= kHasPath;
  if (!link.working_folder.empty()) flags |= kHasWorkingFolder;
  if (!link.arguments.empty()) flags |= kHasArguments;
  file.U32(kHeaderSize);
  file.Raw(kLinkClass);
  file.U32(flags);
  file.U32(0);  // attributes of the target
  file.Zeros(kTimes);
  file.U32(0);  // size of the target
  file.U32(0);  // index of the icon
  file.U32(kShowNormal);
  file.Zeros(kHeaderReserved);
}

/// A text with its length in UTF-16 units before it; nothing for an empty one, whose flag is off.
void AddText(Bytes& file, std::string_view text) {
  if (text.empty()) return;
  file.U16(ToUtf16(text).size());
  file.Utf16(text);
}

bool IsCountable(std::string_view text) { return ToUtf16(text).size() <= kLargestCount; }

}  // namespace

Result<std::string> FormatShellLink(const ShellLink& link, bool target_is_folder) {
  const RuntimeError refused = StandardError(kBadFileName);
  if (!IsDrivePath(link.target) || !IsCountable(link.target)) return refused;
  if (!IsCountable(link.working_folder) || !IsCountable(link.arguments)) return refused;
  const Bytes items = ItemList(link.target, target_is_folder);
  if (items.size() > kLargestCount) return refused;

  const std::optional<Bytes> path = PathBlock(link.target);
  Bytes file;
  AddHeader(file, link, path.has_value());
  file.U16(items.size());
  file.Raw(items.data());
  if (path) file.Raw(path->data());
  AddText(file, link.working_folder);
  AddText(file, link.arguments);
  file.U32(0);  // no further blocks
  return file.data();
}

}  // namespace zent
