#pragma once

#include <optional>
#include <vector>

#include "base/Status.h"
#include "jet/format/IndexPage.h"
#include "jet/store/IndexTree.h"

namespace zent::jet {

/// A change of a tree that reaches beyond the entries of one leaf: the pages from the root down to
/// the leaf are rebuilt where they change. A node's entry is a copy of the last entry below its
/// child; the last child, the tail, has none.
class IndexChange {
 public:
  explicit IndexChange(IndexTree& tree) : tree_(tree), maps_(tree.maps()) {}

  Status Insert(const IndexTree::Path& path, const IndexEntry& entry);
  Status Delete(const IndexTree::Path& path);

  /// Cuts the links between the neighbours `left` and `right` where they are nodes: those of
  /// different parents are not linked.
  Status CutNodeLinks(PageNumber left, PageNumber right);

 private:
  struct Level {
    PageNumber page = 0;
    std::size_t child = 0;
    IndexPage content = {};
    bool changed = false;  ///< a tail that stood among the entries as well does so no more
  };
  /// Where new entries went, for a split that leaves dense pages behind.
  enum class Growth : std::uint8_t { Anywhere, AtEnd };

  Status Load(const IndexTree::Path& path);
  /// Puts `to` in place of `from` in a link of a page of the tree; another link is left alone.
  Status ChangeLink(PageNumber page, bool next, PageNumber from, PageNumber to);
  /// Writes the page at `depth` and what follows from it above. `last`: what is now the last entry
  /// below it, when that has changed.
  Status Store(std::size_t depth, std::optional<IndexEntry> last, Growth growth);
  Result<std::vector<IndexEntry>> Write(std::size_t& depth, Growth growth);
  Status GrowRoot();
  Result<IndexEntry> SplitOff(Level& level, std::size_t count);
  Status RemovePage(std::size_t depth);
  Status CollapseRoot();

  IndexTree& tree_;
  UsageMaps& maps_;
  std::vector<Level> levels_;  ///< from the root to the leaf
};

}  // namespace zent::jet
