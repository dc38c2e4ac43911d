#include <algorithm>

#include "jet/format/IndexPage.h"

namespace zent::jet {
namespace {

constexpr std::size_t PointerSize(bool leaf) { return leaf ? kLeafPointer : kNodePointer; }

std::size_t SizeWithPrefix(const std::vector<IndexEntry>& entries, bool leaf, std::size_t prefix) {
  std::size_t size = 0;
  for (const IndexEntry& entry : entries) size += entry.key.size() + PointerSize(leaf) - prefix;
  return entries.empty() ? 0 : size + prefix;
}

/// A page's entry area, its mask and the numbers that follow from them.
class EntryArea {
 public:
  EntryArea(JetVersion version, MutableBytes page)
      : place_(LayoutOf(version).index_page),
        page_size_(LayoutOf(version).page_size),
        page_(page) {}

  MutableBytes bytes() { return page_.subspan(place_.entries, page_size_ - place_.entries); }

  /// Clears the marks of all ends behind `end`.
  void ClearMaskBehind(std::size_t end) {
    const MutableBytes mask = page_.subspan(place_.mask, place_.mask_size).subspan(end / 8);
    mask[0] = static_cast<std::uint8_t>(mask[0] & ((2U << (end % 8)) - 1U));
    std::fill(mask.begin() + 1, mask.end(), std::uint8_t{0});
  }
  void MarkEnd(std::size_t end) {
    std::uint8_t& byte = page_[place_.mask + end / 8];
    byte = static_cast<std::uint8_t>(byte | (1U << (end % 8)));
  }
  void SetUsed(std::size_t used) {
    StoreU16(page_, place_.free_space,
             static_cast<std::uint32_t>(page_size_ - place_.entries - used));
  }
  void SetPrefix(std::size_t prefix) {
    page_[place_.prefix] = static_cast<std::uint8_t>(prefix);
    if (place_.prefix_size > 1) page_[place_.prefix + 1] = static_cast<std::uint8_t>(prefix >> 8U);
  }

  /// Writes an entry without the first `prefix` bytes of its key and returns its end.
  std::size_t Put(const IndexEntry& entry, bool leaf, std::size_t prefix, std::size_t at) {
    const MutableBytes area = bytes();
    std::copy(entry.key.begin() + static_cast<std::ptrdiff_t>(prefix), entry.key.end(),
              area.begin() + static_cast<std::ptrdiff_t>(at));
    at += entry.key.size() - prefix;
    StoreBigU24(area, at, entry.row.page);
    area[at + 3] = entry.row.row;
    if (!leaf) StoreBigU32(area, at + kLeafPointer, entry.child);
    return at + PointerSize(leaf);
  }

 private:
  const Layout::IndexPage& place_;
  std::size_t page_size_;
  MutableBytes page_;
};

/// Where entry `i` of the view begins.
std::size_t BeginOf(const IndexPageView& view, std::size_t i) {
  return i == 0 ? 0 : view.End(i - 1);
}

}  // namespace

std::size_t IndexPageRoom(JetVersion version) {
  const Layout& layout = LayoutOf(version);
  return layout.page_size - layout.index_page.entries;
}

std::size_t BestPrefix(const std::vector<IndexEntry>& entries) {
  if (entries.size() < 2) return 0;
  // Of entries in order the first and the last would tell it all; those of a damaged page may be in
  // none, and keys must not change by being written again.
  const std::string& first = entries.front().key;
  auto shared = first.end();
  for (const IndexEntry& entry : entries) {
    shared = std::mismatch(first.begin(), shared, entry.key.begin(), entry.key.end()).first;
  }
  return static_cast<std::size_t>(shared - first.begin());
}

std::size_t PackedSize(const std::vector<IndexEntry>& entries, bool leaf) {
  return SizeWithPrefix(entries, leaf, BestPrefix(entries));
}

bool BuildIndexPage(JetVersion version, const IndexPage& content, MutableBytes page) {
  const Layout& layout = LayoutOf(version);
  const Layout::IndexPage& place = layout.index_page;
  const std::size_t room = IndexPageRoom(version);
  std::size_t prefix = 0;
  if (SizeWithPrefix(content.entries, content.leaf, 0) > room) {
    const std::size_t longest = place.prefix_size == 1 ? 0xFF : 0xFFFF;
    prefix = std::min(BestPrefix(content.entries), longest);
    if (SizeWithPrefix(content.entries, content.leaf, prefix) > room) return false;
  }

  std::fill(page.begin(), page.end(), std::uint8_t{0});
  const PageType type = content.leaf ? PageType::IndexLeaf : PageType::IndexNode;
  page[0] = static_cast<std::uint8_t>(type);
  page[1] = 1;
  StoreU32(page, place.owner, content.owner);
  StoreU32(page, place.previous, content.previous);
  StoreU32(page, place.next, content.next);
  StoreU32(page, place.tail, content.tail);
  page[place.level] = content.level;

  EntryArea area(version, page);
  area.SetPrefix(prefix);
  std::size_t end = 0;
  for (const IndexEntry& entry : content.entries) {
    end = area.Put(entry, content.leaf, end == 0 ? 0 : prefix, end);
    area.MarkEnd(end);
  }
  area.SetUsed(end);
  return true;
}

bool InsertEntry(const IndexPageView& view, JetVersion version, std::size_t at,
                 const IndexEntry& entry, MutableBytes page) {
  const std::size_t prefix = view.count() == 0 ? 0 : view.prefix();
  if (prefix > 0) {
    if (at == 0 || view.count() < 2 || view.KeyHead(1).size() < prefix) return false;
    if (!std::string_view(entry.key).starts_with(view.KeyHead(1))) return false;
  }
  const std::size_t size = entry.key.size() - prefix + PointerSize(view.leaf());
  if (view.used() + size > IndexPageRoom(version)) return false;

  EntryArea area(version, page);
  const MutableBytes bytes = area.bytes();
  const std::size_t begin = BeginOf(view, at);
  std::copy_backward(bytes.begin() + static_cast<std::ptrdiff_t>(begin),
                     bytes.begin() + static_cast<std::ptrdiff_t>(view.used()),
                     bytes.begin() + static_cast<std::ptrdiff_t>(view.used() + size));
  area.ClearMaskBehind(begin);
  area.SetPrefix(prefix);
  area.MarkEnd(area.Put(entry, view.leaf(), prefix, begin));
  for (std::size_t i = at; i < view.count(); ++i) area.MarkEnd(view.End(i) + size);
  area.SetUsed(view.used() + size);
  return true;
}

bool RemoveEntry(const IndexPageView& view, JetVersion version, std::size_t at, MutableBytes page) {
  const bool only = view.count() == 1;
  if (at == 0 && view.prefix() > 0 && !only) return false;
  const std::size_t begin = BeginOf(view, at);
  const std::size_t size = view.End(at) - begin;
  EntryArea area(version, page);
  const MutableBytes bytes = area.bytes();
  std::copy(bytes.begin() + static_cast<std::ptrdiff_t>(begin + size),
            bytes.begin() + static_cast<std::ptrdiff_t>(view.used()),
            bytes.begin() + static_cast<std::ptrdiff_t>(begin));
  area.ClearMaskBehind(begin);
  if (only) area.SetPrefix(0);
  for (std::size_t i = at + 1; i < view.count(); ++i) area.MarkEnd(view.End(i) - size);
  area.SetUsed(view.used() - size);
  return true;
}

}  // namespace zent::jet
