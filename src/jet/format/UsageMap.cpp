#include "jet/format/UsageMap.h"

#include <bit>

#include "jet/format/JetErrors.h"

namespace zent::jet {
std::uint32_t PagesPerBitmap(JetVersion version) {
  return static_cast<std::uint32_t>((LayoutOf(version).page_size - kBitmapHeadSize) * 8);
}

bool PageBits::Has(PageNumber page) const {
  if (!Covers(page)) return false;
  const PageNumber bit = page - first_;
  return (bits_[bit / 8] & (1U << (bit % 8))) != 0;
}

std::optional<PageNumber> PageBits::Next(PageNumber from) const {
  std::size_t bit = from <= first_ ? 0 : from - first_;
  for (std::size_t byte = bit / 8; byte < bits_.size(); ++byte) {
    const unsigned rest = bits_[byte] & (0xFFU << (bit % 8));
    if (rest == 0) {
      bit = 0;
      continue;
    }
    const std::uint64_t page =
        first_ + std::uint64_t{byte} * 8 + static_cast<std::uint64_t>(std::countr_zero(rest));
    if (page > 0xFFFFFFFFU) return std::nullopt;
    return static_cast<PageNumber>(page);
  }
  return std::nullopt;
}

Result<UsageMapView> UsageMapView::Open(JetVersion version, ByteView row, PageNumber number) {
  if (row.size() < kInlineBitsOffset || row.size() > LayoutOf(version).page_size) {
    return Damaged(number, "a usage map of impossible length");
  }
  switch (row[0]) {
    case static_cast<std::uint8_t>(MapKind::Inline):
      return UsageMapView(MapKind::Inline, row);
    case static_cast<std::uint8_t>(MapKind::Reference):
      return UsageMapView(MapKind::Reference, row);
    default:
      return Damaged(number, "a usage map of unknown kind");
  }
}

PageBits UsageMapView::bits() const {
  return {LoadU32(row_, kFirstPageOffset), row_.subspan(kInlineBitsOffset)};
}

Result<PageBits> OpenBitmapPage(JetVersion version, ByteView page, std::size_t i,
                                PageNumber number) {
  const std::size_t page_size = LayoutOf(version).page_size;
  if (page.size() < page_size || page[0] != static_cast<std::uint8_t>(PageType::Bitmap)) {
    return Damaged(number, "no page of a usage map");
  }
  const auto first = static_cast<PageNumber>(i * PagesPerBitmap(version));
  return PageBits(first, page.first(page_size).subspan(kBitmapHeadSize));
}

}  // namespace zent::jet
