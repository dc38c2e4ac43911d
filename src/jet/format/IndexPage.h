#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/Layout.h"

/// Pages of an index tree. Entries ascend by key (as unsigned bytes), then page, then row. All but
/// the first leave out the prefix that the page shares. The application lets a prefix run on into
/// the row pointers where these begin alike; that is read, and never written.
namespace zent::jet {

/// What follows the key of an entry: page and row, and in a node the child as well.
inline constexpr std::size_t kLeafPointer = 4;
inline constexpr std::size_t kNodePointer = 8;

struct IndexEntry {
  std::string key = {};
  RowPointer row = {};
  PageNumber child = 0;  ///< nodes: the page whose last entry this is a copy of

  bool operator==(const IndexEntry&) const = default;
};

/// Order of entries: below zero, zero or above zero.
int CompareEntries(std::string_view a_key, RowPointer a_row, std::string_view b_key,
                   RowPointer b_row);

/// A page in memory, for changes that rebuild it.
struct IndexPage {
  std::uint8_t level = 0;  ///< 0 leaf, 1 node above leaves, ...
  bool leaf = true;        ///< told by the page type: some writers leave the level of nodes 0
  PageNumber owner = 0;    ///< definition page of the table
  PageNumber previous = 0;
  PageNumber next = 0;
  PageNumber tail = 0;  ///< nodes: the last child, which has no entry; 0: none
  std::vector<IndexEntry> entries = {};

  bool operator==(const IndexPage&) const = default;
};

/// Reads the head and finds the entries without copying any. The page must outlive it. Cheap to
/// move.
class IndexPageView {
 public:
  /// Checks type, mask, prefix and the length of every entry; not their order.
  static Result<IndexPageView> Open(JetVersion version, ByteView page, PageNumber number);

  bool leaf() const { return leaf_; }
  std::uint8_t level() const { return page_[layout_->index_page.level]; }
  PageNumber owner() const { return LoadU32(page_, layout_->index_page.owner); }
  PageNumber previous() const { return LoadU32(page_, layout_->index_page.previous); }
  PageNumber next() const { return LoadU32(page_, layout_->index_page.next); }
  PageNumber tail() const { return LoadU32(page_, layout_->index_page.tail); }
  /// Whether the tail stands among the entries as well: some writers leave it so.
  bool ListsTail() const { return count() > 0 && tail() != 0 && Child(count() - 1) == tail(); }
  std::size_t free_space() const { return LoadU16(page_, layout_->index_page.free_space); }
  std::size_t prefix() const { return prefix_; }
  /// Bytes that the entries take.
  std::size_t used() const { return ends_.empty() ? 0 : ends_.back(); }

  std::size_t count() const { return ends_.size(); }
  /// Where entry `i` ends, counted from the first.
  std::size_t End(std::size_t i) const { return ends_[i]; }
  /// Key of entry `i` in two parts, to be read one after the other.
  std::string_view KeyHead(std::size_t i) const;
  std::string_view KeyTail(std::size_t i) const;
  std::string Key(std::size_t i) const;
  RowPointer Row(std::size_t i) const { return RowOf(PointerOf(i)); }
  PageNumber Child(std::size_t i) const;
  IndexEntry Entry(std::size_t i) const { return {Key(i), Row(i), leaf_ ? 0 : Child(i)}; }

  /// Order of entry `i` against (key, row).
  int Compare(std::size_t i, std::string_view key, RowPointer row) const;
  /// The first entry that is not below (key, row); count() when all are.
  std::size_t LowerBound(std::string_view key, RowPointer row) const;

  /// The page in memory.
  IndexPage Load() const;

 private:
  IndexPageView(const Layout& layout, ByteView page) : layout_(&layout), page_(page) {}
  bool FindEntries();
  std::size_t Begin(std::size_t i) const { return i == 0 ? 0 : ends_[i - 1]; }
  /// Entry `i` as stored.
  ByteView Stored(std::size_t i) const;
  std::size_t KeySize(std::size_t i) const;
  /// What follows the key, gathered where the prefix runs on into it.
  using PointerBytes = std::array<std::uint8_t, 8>;
  PointerBytes PointerOf(std::size_t i) const;
  static RowPointer RowOf(const PointerBytes& pointer) {
    return {.page = LoadBigU24(pointer, 0), .row = pointer[3]};
  }
  std::size_t PointerSize() const { return leaf_ ? kLeafPointer : kNodePointer; }

  const Layout* layout_;
  ByteView page_;
  bool leaf_ = true;
  std::size_t prefix_ = 0;
  std::vector<std::uint16_t> ends_;  ///< of the entries, within the entry area
};

/// Bytes of room for entries.
std::size_t IndexPageRoom(JetVersion version);

/// The longest prefix that the entries may leave out: common to all keys.
std::size_t BestPrefix(const std::vector<IndexEntry>& entries);

/// Bytes that the entries take with their best prefix.
std::size_t PackedSize(const std::vector<IndexEntry>& entries, bool leaf);

/// Writes `content` into `page`, with a prefix only when it would not fit without one (as Access
/// does). False, and nothing written, when it does not fit at all.
bool BuildIndexPage(JetVersion version, const IndexPage& content, MutableBytes page);

/// Puts an entry before entry `at` of a page that was opened as `view`, without rebuilding it.
/// False, and nothing changed, when that is not possible (no room, another prefix, the first place
/// of a page with a prefix): rebuild then. `view` must not be used afterwards.
bool InsertEntry(const IndexPageView& view, JetVersion version, std::size_t at,
                 const IndexEntry& entry, MutableBytes page);

/// Takes entry `at` out; false, and nothing changed, for the first of a page with a prefix.
bool RemoveEntry(const IndexPageView& view, JetVersion version, std::size_t at, MutableBytes page);

}  // namespace zent::jet
