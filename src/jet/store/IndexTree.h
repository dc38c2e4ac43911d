#pragma once

#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/format/IndexPage.h"
#include "jet/store/IndexCursor.h"
#include "jet/store/UsageMaps.h"

namespace zent::jet {

/// Where a tree is. Its root page never changes.
struct IndexPlace {
  PageNumber table = 0;  ///< definition page, named by every page of the tree
  PageNumber root = 0;
  RowPointer map = {};  ///< all pages of the tree
};

/// Keys beyond this length leave no room for three entries on a node.
inline constexpr std::size_t kMaxIndexKey = 1190;

/// The tree of one index. Changes need an open transaction of the pager; one that fails half way is
/// for the owner of the transaction to roll back.
class IndexTree {
 public:
  /// `maps` must outlive it.
  IndexTree(UsageMaps& maps, const IndexPlace& place) : maps_(maps), place_(place) {}

  /// Makes an empty tree whose pages go into `map`.
  static Result<IndexTree> Create(UsageMaps& maps, PageNumber table, RowPointer map);

  const IndexPlace& place() const { return place_; }
  UsageMaps& maps() const { return maps_; }
  IndexCursor Cursor() const { return {maps_.pager(), place_.table, place_.root}; }

  /// Whether an entry has exactly this key.
  Result<bool> HasKey(std::string_view key) const;

  /// kRecordTooLarge for a key beyond kMaxIndexKey; damage for an entry that is there already.
  Status Insert(std::string_view key, RowPointer row);
  /// Damage when there is no such entry.
  Status Delete(std::string_view key, RowPointer row);
  /// Releases all pages but the root, which becomes an empty leaf.
  Status Clear();

 private:
  /// A page on the way down: the child taken, or the place in the leaf.
  struct Step {
    PageNumber page = 0;
    std::size_t child = 0;
    bool tail = false;
  };
  using Path = std::vector<Step>;
  struct Place {
    Path path;
    IndexPageHold leaf;
  };
  Result<Place> Descend(std::string_view key, RowPointer row) const;
  /// Whether the last entry of the leaf at the end of `path` is copied to no node.
  static bool EndsTree(const Path& path);
  /// Damage when the page is none of this tree: a damaged root or child leads into that of another
  /// index of the table, which a change must not touch.
  Status CheckOwn(PageNumber page);
  /// Takes a page out of the tree's map and releases it.
  Status Release(PageNumber page);

  friend class IndexChange;

  UsageMaps& maps_;
  IndexPlace place_;
  PageNumber own_ = 0;  ///< the last page that was found in the map; 0: none
};

}  // namespace zent::jet
