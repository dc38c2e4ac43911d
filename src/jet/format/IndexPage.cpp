#include "jet/format/IndexPage.h"

#include <algorithm>
#include <bit>

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

constexpr std::size_t kLeafPointer = 4;  // of a leaf's entry, behind the key: page and row

int Sign(int order) { return (order > 0 ? 1 : 0) - (order < 0 ? 1 : 0); }

}  // namespace

int CompareEntries(std::string_view a_key, RowPointer a_row, std::string_view b_key,
                   RowPointer b_row) {
  const int keys = a_key.compare(b_key);
  if (keys != 0) return Sign(keys);
  if (a_row == b_row) return 0;
  return a_row < b_row ? -1 : 1;
}

Result<IndexPageView> IndexPageView::Open(JetVersion version, ByteView page, PageNumber number) {
  const Layout& layout = LayoutOf(version);
  if (page.size() < layout.page_size) return Damaged(number, "a page is cut");
  const bool leaf = page[0] == static_cast<std::uint8_t>(PageType::IndexLeaf);
  if (!leaf && page[0] != static_cast<std::uint8_t>(PageType::IndexNode)) {
    return Damaged(number, "no page of an index");
  }
  Result<IndexPageView> view = IndexPageView(layout, page.first(layout.page_size));
  view.value().leaf_ = leaf;
  view.value().prefix_ = layout.index_page.prefix_size == 1
                             ? page[layout.index_page.prefix]
                             : LoadU16(page, layout.index_page.prefix);
  if (!view.value().FindEntries()) return Damaged(number, "its index entries do not fit together");
  return view;
}

bool IndexPageView::FindEntries() {
  const Layout::IndexPage& place = layout_->index_page;
  const std::size_t room = layout_->page_size - place.entries;
  const ByteView mask = page_.subspan(place.mask, place.mask_size);
  std::size_t begin = 0;
  for (std::size_t byte = 0; byte < mask.size(); ++byte) {
    for (unsigned bits = mask[byte]; bits != 0; bits &= bits - 1) {
      const std::size_t end = 8 * byte + static_cast<std::size_t>(std::countr_zero(bits));
      if (end > room || end <= begin || count_ == kMaxEntries) return false;
      const std::size_t stored = end - begin;
      if (count_ == 0 && prefix_ > stored) return false;
      if (stored + (count_ == 0 ? 0 : prefix_) < PointerSize()) return false;
      ends_[count_++] = static_cast<std::uint16_t>(end);
      begin = end;
    }
  }
  return true;
}

ByteView IndexPageView::Stored(std::size_t i) const {
  const std::size_t begin = Begin(i);
  return page_.subspan(layout_->index_page.entries + begin, ends_[i] - begin);
}

std::size_t IndexPageView::KeySize(std::size_t i) const {
  return ends_[i] - Begin(i) + (i == 0 ? 0 : prefix_) - PointerSize();
}

std::uint8_t IndexPageView::PointerByte(std::size_t i, std::size_t k) const {
  const std::size_t at = KeySize(i) + k;
  const std::size_t left_out = i == 0 ? 0 : prefix_;
  return at < left_out ? Stored(0)[at] : Stored(i)[at - left_out];
}

std::string_view IndexPageView::KeyHead(std::size_t i) const {
  if (i == 0) return {};
  return AsText(Stored(0).first(std::min(prefix_, KeySize(i))));
}

std::string_view IndexPageView::KeyTail(std::size_t i) const {
  return AsText(Stored(i).first(KeySize(i) - KeyHead(i).size()));
}

std::string IndexPageView::Key(std::size_t i) const {
  std::string key(KeyHead(i));
  key += KeyTail(i);
  return key;
}

RowPointer IndexPageView::Row(std::size_t i) const {
  const std::array<std::uint8_t, 3> page = {PointerByte(i, 0), PointerByte(i, 1),
                                            PointerByte(i, 2)};
  return {.page = LoadBigU24(page, 0), .row = PointerByte(i, 3)};
}

PageNumber IndexPageView::Child(std::size_t i) const {
  std::array<std::uint8_t, 4> child = {};
  for (std::size_t k = 0; k < child.size(); ++k) child[k] = PointerByte(i, kLeafPointer + k);
  return LoadBigU32(child, 0);
}

int IndexPageView::Compare(std::size_t i, std::string_view key, RowPointer row) const {
  const std::string_view head = KeyHead(i);
  if (const int order = head.compare(key.substr(0, head.size())); order != 0) return Sign(order);
  return CompareEntries(KeyTail(i), Row(i), key.substr(head.size()), row);
}

std::size_t IndexPageView::LowerBound(std::string_view key, RowPointer row) const {
  std::size_t low = 0;
  std::size_t high = count_;
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    if (Compare(middle, key, row) < 0) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

IndexPage IndexPageView::Load() const {
  IndexPage page = {.level = level(),
                    .leaf = leaf_,
                    .owner = owner(),
                    .previous = previous(),
                    .next = next(),
                    .tail = tail(),
                    .entries = {}};
  page.entries.reserve(count_);
  for (std::size_t i = 0; i < count_; ++i) page.entries.push_back(Entry(i));
  return page;
}

}  // namespace zent::jet
