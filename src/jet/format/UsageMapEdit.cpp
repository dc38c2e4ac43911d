#include <algorithm>

#include "jet/format/DataPage.h"
#include "jet/format/UsageMap.h"

namespace zent::jet {
namespace {

PageBits BitsOf(ByteView row) {
  return {LoadU32(row, kFirstPageOffset), row.subspan(kInlineBitsOffset)};
}

void PutBit(MutableBytes bits, std::size_t bit, bool value) {
  const auto mask = static_cast<std::uint8_t>(1U << (bit % 8));
  std::uint8_t& byte = bits[bit / 8];
  byte = static_cast<std::uint8_t>(value ? byte | mask : byte & ~mask);
}

std::vector<PageNumber> PagesOf(ByteView row) {
  const PageBits bits = BitsOf(row);
  std::vector<PageNumber> pages;
  std::optional<PageNumber> page = bits.Next(0);
  while (page) {
    pages.push_back(*page);
    page = *page == 0xFFFFFFFFU ? std::nullopt : bits.Next(*page + 1);
  }
  return pages;
}

}  // namespace

std::vector<std::uint8_t> NewUsageMapRow(JetVersion version) {
  return std::vector<std::uint8_t>(LayoutOf(version).data.usage_map_row);
}

void InitGlobalMapPage(MutableBytes page) {
  InitDataPage(JetVersion::Jet4, kGlobalMapPage, page);
  std::vector<std::uint8_t> map = NewUsageMapRow(JetVersion::Jet4);
  const std::vector<std::uint8_t> second = map;
  for (PageNumber free = kRelationshipsPage + 1; SetInlineBit(map, free, true); ++free) {
  }
  for (const auto& row : {map, second}) {
    InsertRow(JetVersion::Jet4, page, row, SlotKind::Row, false);
  }
}

void InitBitmapPage(bool all_set, MutableBytes page) {
  std::fill(page.begin(), page.end(), all_set ? std::uint8_t{0xFF} : std::uint8_t{0});
  page[0] = static_cast<std::uint8_t>(PageType::Bitmap);
  page[1] = 1;
  page[2] = page[3] = 0;
}

bool SetInlineBit(MutableBytes row, PageNumber page, bool value) {
  const PageBits bits = BitsOf(row);
  if (!bits.Covers(page)) return false;
  PutBit(row.subspan(kInlineBitsOffset), page - bits.first(), value);
  return true;
}

void SetBitmapBit(JetVersion version, MutableBytes bitmap_page, PageNumber page, bool value) {
  PutBit(bitmap_page.subspan(kBitmapHeadSize), page % PagesPerBitmap(version), value);
}

bool MoveWindow(MutableBytes row, PageNumber page) {
  const std::vector<PageNumber> pages = PagesOf(row);
  const PageNumber lowest = pages.empty() ? page : std::min(page, pages.front());
  const PageNumber highest = pages.empty() ? page : std::max(page, pages.back());
  const PageNumber first = lowest / 8 * 8;
  const MutableBytes bits = row.subspan(kInlineBitsOffset);
  if (highest - first >= bits.size() * 8) return false;

  StoreU32(row, kFirstPageOffset, first);
  std::fill(bits.begin(), bits.end(), std::uint8_t{0});
  for (const PageNumber kept : pages) PutBit(bits, kept - first, true);
  return true;
}

std::vector<PageNumber> ConvertToReference(MutableBytes row) {
  std::vector<PageNumber> pages = PagesOf(row);
  std::fill(row.begin(), row.end(), std::uint8_t{0});
  row[0] = static_cast<std::uint8_t>(MapKind::Reference);
  return pages;
}

void SetReference(MutableBytes row, std::size_t i, PageNumber bitmap_page) {
  StoreU32(row, 1 + 4 * i, bitmap_page);
}

}  // namespace zent::jet
