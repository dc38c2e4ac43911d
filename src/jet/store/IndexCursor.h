#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "jet/format/IndexPage.h"
#include "jet/storage/Pager.h"

namespace zent::jet {

/// A page of an index, held and checked: its type, and that it names the table.
struct IndexPageHold {
  PageView page;
  IndexPageView view;
};
Result<IndexPageHold> HoldIndexPage(Pager& pager, PageNumber page, PageNumber table);

/// Deeper trees than this are loops.
inline constexpr int kMaxIndexHeight = 20;

/// Goes through the entries of an index in both directions. Empty leaves and a last node child that
/// stands among the entries are taken as they are; leaves that are not in order are damage. After a
/// change of the tree it must seek again.
class IndexCursor {
 public:
  /// `table` is the definition page that the pages name.
  IndexCursor(Pager& pager, PageNumber table, PageNumber root)
      : pager_(pager), table_(table), root_(root) {}

  /// Goes to the first entry that is not below (key, row): of row pointer 0, to the first of that
  /// key. False when all are below. Reads a page per level.
  Result<bool> Seek(std::string_view key, RowPointer row = {});
  Result<bool> SeekFirst() { return Seek({}); }
  Result<bool> SeekLast();
  /// False, and on no entry, behind the last one and before the first.
  Result<bool> Next();
  Result<bool> Previous();

  bool on_entry() const { return leaf_.has_value(); }
  /// Only when on_entry().
  std::string key() const { return leaf_->view.Key(at_); }
  RowPointer row() const { return leaf_->view.Row(at_); }
  int Compare(std::string_view key, RowPointer row) const {
    return leaf_->view.Compare(at_, key, row);
  }

 private:
  Result<bool> EnterNext();
  Result<bool> EnterPrevious();
  Status Hold(PageNumber page);
  /// The error of a damaged page; on no entry from now on.
  RuntimeError Stop(PageNumber page, std::string_view what);

  Pager& pager_;
  PageNumber table_;
  PageNumber root_;
  std::optional<IndexPageHold> leaf_;
  std::size_t at_ = 0;
};

}  // namespace zent::jet
