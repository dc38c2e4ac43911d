#pragma once

#include <optional>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/store/RowPages.h"
#include "jet/store/UsageMaps.h"

namespace zent::jet {

/// Fills new pages of an owner with rows, one page after the other.
class RowAppender {
 public:
  RowAppender(UsageMaps& maps, const RowPages::Owner& owner) : maps_(maps), owner_(owner) {}

  /// kRecordTooLarge for a row that is longer than a page takes.
  Result<RowPointer> Append(ByteView row);
  /// Notes the room of the last page. Nothing may be appended afterwards.
  Status Finish() { return ClosePage(); }

 private:
  Status ClosePage();

  UsageMaps& maps_;
  RowPages::Owner owner_;
  std::optional<PageEdit> page_;
};

}  // namespace zent::jet
