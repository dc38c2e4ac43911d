#pragma once

#include <optional>
#include <string>
#include <vector>

#include "jet/store/IndexCursor.h"
#include "jet/store/IndexTree.h"
#include "jet/tools/EntryDigest.h"
#include "jet/tools/MapCheck.h"

namespace zent::jet {

/// What the tree of an index is to be checked for, beyond its pages.
struct TreeRules {
  bool unique = false;
  std::size_t columns = 1;  ///< a key of so many bytes is that of nulls alone
  bool keys_known = true;   ///< else the digest is that of the row pointers alone
};

/// The pages of an index: levels, order, links, the copies of last entries in nodes, and that the
/// index's map has exactly these pages.
class TreeCheck {
 public:
  TreeCheck(Checking& checking, const IndexPlace& place, const TreeRules& rules,
            std::string subject);

  /// Goes through the tree. False when it is damaged such that its entries cannot be gone through.
  bool Run();
  /// The entries of the leaves.
  const EntryDigest& entries() const { return entries_; }

 private:
  /// The page that was last met at a height, for the links.
  struct Neighbour {
    PageNumber page = 0;
    PageNumber next = 0;
  };

  void Visit(PageNumber page, int depth, std::optional<std::uint8_t> level);
  void VisitLeaf(const IndexPageView& view, PageNumber page, int depth);
  void VisitNode(const IndexPageView& view, PageNumber page, int depth);
  void CheckLevel(const IndexPageView& view, PageNumber page, std::optional<std::uint8_t> level);
  void CheckLinks(const IndexPageView& view, PageNumber page, int depth);
  void CheckEnds();
  void CheckMapOfPages();
  void Fault(PageNumber page, const std::string& what);

  Checking& checking_;
  IndexPlace place_;
  TreeRules rules_;
  std::string subject_;
  PageUse::User user_;
  std::vector<PageNumber> pages_;
  std::vector<Neighbour> neighbours_;  ///< by depth
  std::optional<int> leaf_depth_;
  std::optional<IndexEntry> last_;  ///< of the leaves gone through
  EntryDigest entries_;
  bool whole_ = true;
};

}  // namespace zent::jet
