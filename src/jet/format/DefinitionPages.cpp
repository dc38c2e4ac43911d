#include "jet/format/DefinitionPages.h"

#include <algorithm>

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

// Head of each page: type, 1, free space (Jet 3: two letters), next page.
constexpr std::size_t kFreeOffset = 2;
constexpr std::size_t kNextOffset = 4;
constexpr std::size_t kHeadSize = 8;
constexpr std::uint32_t kJet3Letters = 0x4356;  // "VC"

// 255 columns and 32 indexes with the longest names take less than half of this.
constexpr std::size_t kMaxDefinition = std::size_t{128} * 1024;

}  // namespace

Status DefinitionJoiner::Add(PageNumber number, ByteView page) {
  if (page.size() < layout_.page_size) return Damaged(number, "a page is cut");
  if (page[0] != static_cast<std::uint8_t>(PageType::Definition)) {
    return Damaged(number, "no table definition");
  }
  const bool first = stream_.empty();
  if (first) {
    length_ = LoadU32(page, layout_.definition.length);
    if (length_ < layout_.definition.header_size || length_ > kMaxDefinition) {
      length_ = 0;
      return Damaged(number, "a table definition of impossible length");
    }
  }
  const ByteView part = first ? page : page.subspan(kHeadSize);
  stream_.insert(stream_.end(), part.begin(), part.end());
  next_ = LoadU32(page, kNextOffset);
  if (!complete() && next_ == 0) {
    return Damaged(number, "the pages of a table definition end before it does");
  }
  return {};
}

std::size_t DefinitionPageCount(JetVersion version, std::size_t length) {
  const std::size_t page_size = LayoutOf(version).page_size;
  if (length <= page_size) return 1;
  const std::size_t rest = page_size - kHeadSize;
  return 1 + (length - page_size + rest - 1) / rest;
}

DefinitionPlace DefinitionPlaceOf(JetVersion version, std::size_t offset) {
  const std::size_t page_size = LayoutOf(version).page_size;
  if (offset < page_size) return {.page = 0, .offset = offset};
  const std::size_t rest = page_size - kHeadSize;
  return {.page = 1 + (offset - page_size) / rest,
          .offset = kHeadSize + (offset - page_size) % rest};
}

void WriteDefinitionPage(JetVersion version, ByteView stream, std::size_t index, PageNumber next,
                         MutableBytes page) {
  const std::size_t page_size = LayoutOf(version).page_size;
  const std::size_t rest = page_size - kHeadSize;
  const std::size_t begin = index == 0 ? kHeadSize : page_size + (index - 1) * rest;
  const std::size_t length = std::min(rest, stream.size() - std::min(begin, stream.size()));
  std::fill(page.begin(), page.end(), std::uint8_t{0});
  std::copy_n(stream.begin() + static_cast<std::ptrdiff_t>(begin), length,
              page.begin() + kHeadSize);

  page[0] = static_cast<std::uint8_t>(PageType::Definition);
  page[1] = 1;
  StoreU32(page, kNextOffset, next);
  // The last page counts its free bytes less another head.
  const std::size_t used = kHeadSize + length;
  const std::size_t free =
      next != 0 || used + kHeadSize > page_size ? 0 : page_size - used - kHeadSize;
  StoreU16(page, kFreeOffset,
           version == JetVersion::Jet3 ? kJet3Letters : static_cast<std::uint32_t>(free));
}

}  // namespace zent::jet
