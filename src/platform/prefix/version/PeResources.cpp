#include "platform/prefix/version/PeResources.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/prefix/version/LittleEndian.h"
#include "platform/prefix/version/PeImage.h"

// The resources are a tree of exactly three levels: type, number, language. Offsets of its tables
// count from the start of the tree, the address of the data from the base of the program. Names and
// offsets as in "PE Format", the description of program files that Microsoft publishes.

namespace zent {
namespace {

constexpr std::uint32_t kVersionType = 16;
constexpr std::uint32_t kVersionNumber = 1;

// A table: a header, then the entries with a name, then those with a number.
constexpr std::size_t kTableHeaderSize = 16;
constexpr std::size_t kNamedCountField = 12;     // uint16
constexpr std::size_t kNumberedCountField = 14;  // uint16
constexpr std::size_t kEntrySize = 8;            // uint32 number, uint32 offset
constexpr std::size_t kEntryOffsetField = 4;
constexpr std::uint32_t kIsTable = 0x80000000;  // bit of the offset; without it a leaf

// A leaf.
constexpr std::size_t kLeafSize = 16;
constexpr std::size_t kLeafAddressField = 0;  // uint32
constexpr std::size_t kLeafSizeField = 4;     // uint32, bytes

constexpr std::size_t kLargestBlock = 0xFFFF;

constexpr std::uint32_t kNeutralLanguage = 0;
constexpr std::uint32_t kAmericanEnglish = 0x0409;

struct Entry {
  std::uint32_t number = 0;
  std::uint32_t offset = 0;
};

RuntimeError NoVersion() { return StandardError(kInvalidFileFormat, "no version information"); }

/// The numbered entries of the table at `offset`.
Result<std::vector<Entry>> ReadTable(const PeImage& image, std::uint32_t offset) {
  const std::uint64_t start = std::uint64_t{image.resource_address()} + offset;
  const Result<std::string> header = image.Read(start, kTableHeaderSize);
  if (!header.ok()) return header.error();
  const std::size_t named_size = U16At(header.value(), kNamedCountField) * kEntrySize;
  const std::size_t numbered_size = U16At(header.value(), kNumberedCountField) * kEntrySize;
  if (numbered_size == 0) return std::vector<Entry>{};

  const Result<std::string> rows = image.Read(start + kTableHeaderSize + named_size, numbered_size);
  if (!rows.ok()) return rows.error();
  std::vector<Entry> entries;
  entries.reserve(numbered_size / kEntrySize);
  for (std::size_t row = 0; row < numbered_size; row += kEntrySize) {
    entries.push_back({.number = U32At(rows.value(), row),
                       .offset = U32At(rows.value(), row + kEntryOffsetField)});
  }
  return entries;
}

/// The offset of the table below the entry `number` of the table at `offset`.
Result<std::uint32_t> FindTable(const PeImage& image, std::uint32_t offset, std::uint32_t number) {
  const Result<std::vector<Entry>> entries = ReadTable(image, offset);
  if (!entries.ok()) return entries.error();
  for (const Entry& entry : entries.value()) {
    if (entry.number != number) continue;
    if ((entry.offset & kIsTable) == 0) return NoVersion();
    return entry.offset & ~kIsTable;
  }
  return NoVersion();
}

/// Lower is preferred.
std::uint64_t RankOfLanguage(std::uint32_t language) {
  if (language == kNeutralLanguage) return 0;
  if (language == kAmericanEnglish) return 1;
  return std::uint64_t{language} + 2;
}

/// The offset of the leaf of the preferred language in the table at `offset`.
Result<std::uint32_t> FindLeaf(const PeImage& image, std::uint32_t offset) {
  const Result<std::vector<Entry>> languages = ReadTable(image, offset);
  if (!languages.ok()) return languages.error();
  const auto preferred = std::min_element(
      languages.value().begin(), languages.value().end(), [](const Entry& a, const Entry& b) {
        return RankOfLanguage(a.number) < RankOfLanguage(b.number);
      });
  if (preferred == languages.value().end() || (preferred->offset & kIsTable) != 0) {
    return NoVersion();
  }
  return preferred->offset;
}

}  // namespace

Result<std::string> ReadVersionResource(File& file) {
  const Result<PeImage> image = PeImage::Open(file);
  if (!image.ok()) return image.error();
  const std::uint32_t resources = image.value().resource_address();
  if (resources == 0) return NoVersion();

  const Result<std::uint32_t> numbers = FindTable(image.value(), 0, kVersionType);
  if (!numbers.ok()) return numbers.error();
  const Result<std::uint32_t> languages = FindTable(image.value(), numbers.value(), kVersionNumber);
  if (!languages.ok()) return languages.error();
  const Result<std::uint32_t> leaf_offset = FindLeaf(image.value(), languages.value());
  if (!leaf_offset.ok()) return leaf_offset.error();

  const Result<std::string> leaf =
      image.value().Read(std::uint64_t{resources} + leaf_offset.value(), kLeafSize);
  if (!leaf.ok()) return leaf.error();
  const std::size_t size = U32At(leaf.value(), kLeafSizeField);
  if (size == 0) return std::string();
  return image.value().Read(U32At(leaf.value(), kLeafAddressField), std::min(size, kLargestBlock));
}

}  // namespace zent
