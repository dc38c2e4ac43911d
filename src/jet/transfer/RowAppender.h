#pragma once

#include <vector>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/store/RowPages.h"
#include "jet/store/UsageMaps.h"

namespace zent::jet {

/// Fills new pages of an owner with rows.
class RowAppender {
 public:
  /// `most_open`: pages that are filled at a time. With one the rows stay in their order; with more
  /// a row that one page has no room for does not keep the next ones off it.
  RowAppender(UsageMaps& maps, const RowPages::Owner& owner, std::size_t most_open)
      : maps_(maps), owner_(owner), most_open_(most_open) {}

  /// kRecordTooLarge for a row that is longer than a page takes.
  Result<RowPointer> Append(ByteView row);
  /// Notes the room of the last pages. Nothing may be appended afterwards.
  Status Finish();

 private:
  /// Closes the page with the least room.
  Status ClosePage();

  UsageMaps& maps_;
  RowPages::Owner owner_;
  std::size_t most_open_;
  std::vector<PageEdit> pages_;  ///< being filled
};

}  // namespace zent::jet
