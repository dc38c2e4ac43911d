#pragma once

#include <optional>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/Layout.h"
#include "jet/store/RowPages.h"
#include "jet/store/UsageMaps.h"

namespace zent::jet {

/// A row of a table, its bytes held while this lives. They are those of the page: a change of the
/// table may move them.
struct StoredRow {
  PageView page;
  ByteView bytes;
};

/// The rows of one table as bytes. A row keeps its row pointer while it lives, also when it grows
/// and its bytes move to another page.
class RowStore {
 public:
  /// `definition` is the table's definition page. `maps` must outlive it.
  RowStore(UsageMaps& maps, PageNumber definition, RowPointer owned_map, RowPointer free_map);

  /// The row that `at` names; kRecordDeleted when it is gone. Pointers that go nowhere, to other
  /// tables or in a loop are damage.
  Result<StoredRow> Fetch(RowPointer at);

  /// kRecordTooLarge when the row is longer than a page takes.
  Result<RowPointer> Insert(ByteView row);
  /// Gives a row other bytes: in place, elsewhere on its page, or on another page.
  Status Update(RowPointer at, ByteView row);
  Status Delete(RowPointer at);

  UsageMaps& maps() { return pages_.maps(); }
  PageNumber definition() const { return pages_.owner().number; }
  RowPointer owned_map() const { return pages_.owner().owned; }

 private:
  Result<std::optional<RowPointer>> TargetOf(RowPointer at);
  Status MoveAway(RowPointer header, ByteView row);
  Status CheckSize(ByteView row);

  RowPages pages_;
};

/// Goes through the rows of a table in the order of their row pointers. Each page is read once;
/// moved rows cost one more. The table may change meanwhile: rows behind the place are found.
class RowScan {
 public:
  explicit RowScan(RowStore& rows) : rows_(rows) {}

  /// Moves to the next row; false behind the last one.
  Result<bool> Next();
  /// Begins anew behind the row `at`.
  void MoveBehind(RowPointer at);

  RowPointer at() const { return at_; }
  /// Until the next change of the table or call of Next.
  ByteView bytes() const { return bytes_; }
  /// The page where the bytes lie, for errors.
  PageNumber page() const { return away_ ? away_->page.page() : at_.page; }

 private:
  Result<bool> NextOnPage();
  Result<bool> NextPage();

  RowStore& rows_;
  std::optional<PageView> home_;
  bool entered_ = false;  ///< a row of `home_` was given out: from then on it may change
  PageNumber next_page_ = 0;
  std::size_t next_slot_ = 0;
  std::size_t first_slot_ = 0;  ///< where the first page begins
  std::optional<StoredRow> away_;
  RowPointer at_;
  ByteView bytes_;
};

}  // namespace zent::jet
