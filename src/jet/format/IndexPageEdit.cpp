#include <algorithm>

#include "jet/format/IndexPage.h"

namespace zent::jet {
namespace {

constexpr std::size_t kLeafPointer = 4;
constexpr std::size_t kNodePointer = 8;

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

  void ClearMask() {
    const MutableBytes mask = page_.subspan(place_.mask, place_.mask_size);
    std::fill(mask.begin(), mask.end(), std::uint8_t{0});
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

/// The ends of all entries from the view, those from `at` on moved by `move`, in the mask.
void RewriteMask(const IndexPageView& view, std::size_t first, std::ptrdiff_t move,
                 EntryArea& area) {
  for (std::size_t i = 0; i < view.count(); ++i) {
    const auto end = static_cast<std::ptrdiff_t>(view.End(i));
    area.MarkEnd(static_cast<std::size_t>(i < first ? end : end + move));
  }
}

}  // namespace

std::size_t IndexPageRoom(JetVersion version) {
  const Layout& layout = LayoutOf(version);
  return layout.page_size - layout.index_page.entries;
}

std::size_t BestPrefix(const std::vector<IndexEntry>& entries) {
  if (entries.size() < 2) return 0;
  const std::string& first = entries.front().key;
  const std::string& last = entries.back().key;
  const auto [mismatch, other] =
      std::mismatch(first.begin(), first.end(), last.begin(), last.end());
  std::size_t prefix = static_cast<std::size_t>(mismatch - first.begin());
  // Of a page in order no key is shorter than what its first and last share.
  for (const IndexEntry& entry : entries) prefix = std::min(prefix, entry.key.size());
  return prefix;
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
  const std::size_t begin = at == 0 ? 0 : view.End(at - 1);
  std::copy_backward(bytes.begin() + static_cast<std::ptrdiff_t>(begin),
                     bytes.begin() + static_cast<std::ptrdiff_t>(view.used()),
                     bytes.begin() + static_cast<std::ptrdiff_t>(view.used() + size));
  area.ClearMask();
  area.SetPrefix(prefix);
  area.MarkEnd(area.Put(entry, view.leaf(), prefix, begin));
  RewriteMask(view, at, static_cast<std::ptrdiff_t>(size), area);
  area.SetUsed(view.used() + size);
  return true;
}

bool RemoveEntry(const IndexPageView& view, JetVersion version, std::size_t at, MutableBytes page) {
  const bool only = view.count() == 1;
  if (at == 0 && view.prefix() > 0 && !only) return false;
  const std::size_t begin = at == 0 ? 0 : view.End(at - 1);
  const std::size_t size = view.End(at) - begin;
  EntryArea area(version, page);
  const MutableBytes bytes = area.bytes();
  std::copy(bytes.begin() + static_cast<std::ptrdiff_t>(begin + size),
            bytes.begin() + static_cast<std::ptrdiff_t>(view.used()),
            bytes.begin() + static_cast<std::ptrdiff_t>(begin));
  area.ClearMask();
  if (only) area.SetPrefix(0);
  for (std::size_t i = 0; i < view.count(); ++i) {
    if (i != at) area.MarkEnd(i < at ? view.End(i) : view.End(i) - size);
  }
  area.SetUsed(view.used() - size);
  return true;
}

}  // namespace zent::jet
