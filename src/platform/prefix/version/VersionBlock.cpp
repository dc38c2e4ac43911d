#include "platform/prefix/version/VersionBlock.h"

#include <algorithm>
#include <cstdint>

#include "base/CodePage.h"
#include "base/Text.h"
#include "base/Utf.h"
#include "platform/prefix/version/LittleEndian.h"

// A block, in the Unicode form: uint16 length of the whole, uint16 length of the value, uint16 type
// (1: the value is text, its length counts characters), the name with its NUL, the value, the
// blocks below; value and blocks begin at a multiple of 4. The 16-bit form has no type. As
// Microsoft describes VS_VERSIONINFO, StringFileInfo and the others in "Version Information".

namespace zent {
namespace {

constexpr std::size_t kLengthField = 0;
constexpr std::size_t kValueLengthField = 2;
constexpr std::size_t kTypeField = 4;
constexpr std::size_t kUnicodeHeaderSize = 6;
constexpr std::size_t kAnsiHeaderSize = 4;
constexpr std::string_view kRootName = "VS_VERSION_INFO";

std::size_t Aligned(std::size_t at) { return (at + 3) & ~std::size_t{3}; }

/// Where the first NUL of `size` bytes at an even distance from `at` lies; `end` when there is
/// none.
std::size_t FindNul(std::string_view bytes, std::size_t at, std::size_t end, std::size_t size) {
  for (; at + size <= end; at += size) {
    if (bytes[at] == '\0' && bytes[at + size - 1] == '\0') return at;
  }
  return end;
}

}  // namespace

VersionBlock::VersionBlock(std::string bytes)
    : bytes_(std::move(bytes)),
      is_unicode_(bytes_.compare(std::min(kAnsiHeaderSize, bytes_.size()), kRootName.size(),
                                 kRootName) != 0) {}

std::optional<VersionBlock::Block> VersionBlock::BlockAt(std::size_t at, std::size_t limit) const {
  const std::size_t header_size = is_unicode_ ? kUnicodeHeaderSize : kAnsiHeaderSize;
  if (at > limit || limit - at < header_size) return std::nullopt;
  const std::size_t length = U16At(bytes_, at + kLengthField);
  if (length < header_size) return std::nullopt;

  Block block;
  block.end = std::min(at + length, limit);
  block.next = Aligned(at + length);
  block.is_utf16 = is_unicode_ && U16At(bytes_, at + kTypeField) != 0;

  const std::string_view bytes(bytes_);
  const std::size_t character_size = is_unicode_ ? 2 : 1;
  const std::size_t key_start = at + header_size;
  const std::size_t key_end = FindNul(bytes, key_start, block.end, character_size);
  const std::string_view key = bytes.substr(key_start, key_end - key_start);
  block.key = is_unicode_ ? FromUtf16Bytes(key) : FromAnsi(key);

  const std::size_t value_length = U16At(bytes_, at + kValueLengthField);
  const std::size_t value_size = block.is_utf16 ? value_length * 2 : value_length;
  const std::size_t value_start = std::min(Aligned(key_end + character_size), block.end);
  block.value = bytes.substr(value_start, std::min(value_size, block.end - value_start));
  block.children = Aligned(value_start + value_size);
  return block;
}

std::optional<VersionBlock::Block> VersionBlock::ChildNamed(const Block& parent,
                                                            std::string_view name) const {
  std::optional<Block> child = BlockAt(parent.children, parent.end);
  while (child && !EqualsIgnoringCase(child->key, name)) child = BlockAt(child->next, parent.end);
  return child;
}

std::optional<VersionBlock::Block> VersionBlock::Find(std::string_view path) const {
  std::optional<Block> block = BlockAt(0, bytes_.size());
  while (block && !path.empty()) {
    const std::size_t end = std::min(path.find('\\'), path.size());
    const std::string_view name = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    if (!name.empty()) block = ChildNamed(*block, name);
  }
  return block;
}

std::optional<std::string> VersionBlock::QueryBytes(std::string_view path) const {
  const std::optional<Block> block = Find(path);
  if (!block) return std::nullopt;
  return std::string(block->value);
}

std::optional<std::string> VersionBlock::QueryText(std::string_view path) const {
  const std::optional<Block> block = Find(path);
  if (!block) return std::nullopt;
  // Through ANSI both ways: what the code page lacks has to read "?", as Windows answers it.
  const std::string ansi =
      block->is_utf16 ? ToAnsi(FromUtf16Bytes(block->value)) : std::string(block->value);
  return FromAnsi(std::string_view(ansi).substr(0, ansi.find('\0')));
}

}  // namespace zent
