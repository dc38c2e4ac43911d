#include "jet/format/IndexPage.h"

#include <algorithm>
#include <bit>

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

// No mask of any version has more; so a page may have almost as many entries as bytes of room.
constexpr std::size_t kMostBits = 4096;

/// Calls `mark` with the number of each bit that is set, ascending.
template <typename Mark>
void ForEachBit(ByteView bits, const Mark& mark) {
  const auto visit = [&](std::size_t first, std::uint64_t word) {
    for (; word != 0; word &= word - 1) {
      mark(first + static_cast<std::size_t>(std::countr_zero(word)));
    }
  };
  std::size_t at = 0;
  for (; at + 8 <= bits.size(); at += 8) visit(8 * at, LoadU64(bits, at));
  for (; at < bits.size(); ++at) visit(8 * at, bits[at]);
}

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
  const std::size_t shortest = prefix_ < PointerSize() ? PointerSize() - prefix_ : 1;
  // The loop over the entries has no branch but its own: it is what a search costs most.
  std::array<std::uint16_t, kMostBits> ends;
  std::size_t count = 0;
  std::size_t begin = 0;
  bool too_short = false;
  ForEachBit(mask, [&](std::size_t end) {
    too_short |= end - begin < shortest;
    ends[count++] = static_cast<std::uint16_t>(end);
    begin = end;
  });
  if (count == 0) return true;
  if (too_short || begin > room) return false;
  if (ends[0] < std::max(prefix_, PointerSize())) return false;  // it has the prefix as well
  ends_.assign(ends.begin(), ends.begin() + static_cast<std::ptrdiff_t>(count));
  return true;
}

ByteView IndexPageView::Stored(std::size_t i) const {
  const std::size_t begin = Begin(i);
  return page_.subspan(layout_->index_page.entries + begin, ends_[i] - begin);
}

std::size_t IndexPageView::KeySize(std::size_t i) const {
  return ends_[i] - Begin(i) + (i == 0 ? 0 : prefix_) - PointerSize();
}

IndexPageView::PointerBytes IndexPageView::PointerOf(std::size_t i) const {
  PointerBytes pointer = {};
  const ByteView stored = Stored(i);
  const std::size_t size = PointerSize();
  const std::size_t own = std::min(size, stored.size());
  const std::size_t in_prefix = size - own;
  if (in_prefix > 0) {
    const ByteView shared = Stored(0).subspan(KeySize(i), in_prefix);
    std::copy(shared.begin(), shared.end(), pointer.begin());
  }
  const ByteView last = stored.last(own);
  std::copy(last.begin(), last.end(), pointer.begin() + static_cast<std::ptrdiff_t>(in_prefix));
  return pointer;
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

PageNumber IndexPageView::Child(std::size_t i) const {
  return LoadBigU32(PointerOf(i), kLeafPointer);
}

int IndexPageView::Compare(std::size_t i, std::string_view key, RowPointer row) const {
  const std::string_view head = KeyHead(i);
  if (const int order = head.compare(key.substr(0, head.size())); order != 0) return Sign(order);
  if (const int order = KeyTail(i).compare(key.substr(head.size())); order != 0) return Sign(order);
  return CompareEntries({}, Row(i), {}, row);
}

std::size_t IndexPageView::LowerBound(std::string_view key, RowPointer row) const {
  std::size_t low = 0;
  std::size_t high = count();
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
  page.entries.reserve(count());
  for (std::size_t i = 0; i < count(); ++i) page.entries.push_back(Entry(i));
  return page;
}

}  // namespace zent::jet
