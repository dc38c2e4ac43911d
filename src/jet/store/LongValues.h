#pragma once

#include <functional>
#include <string>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/LongValueDescriptor.h"
#include "jet/format/TableDefinition.h"
#include "jet/store/RowPages.h"
#include "jet/store/UsageMaps.h"

namespace zent::jet {

/// The bytes of the memo or OLE value that `field` describes; `page` is that of the row, for
/// errors. Values longer than the file, chains that end early and chains that loop are damage.
Result<std::string> ReadLongValue(Pager& pager, ByteView field, PageNumber page);
/// As above, in place of what `value` holds.
Status ReadLongValue(Pager& pager, ByteView field, PageNumber page, std::string& value);

/// Puts a row on a page of a column's long values.
using LongValueSink = std::function<Result<RowPointer>(ByteView row)>;

/// Stores a value and returns the bytes of its field: descriptor and value where it is short and
/// not to be `apart`, else the descriptor of the row or the chain of rows that `insert` puts
/// somewhere.
Result<std::string> StoreLongValue(Pager& pager, ByteView value, bool apart,
                                   const LongValueSink& insert);

/// Writes and releases the values of one column.
class LongValues {
 public:
  LongValues(UsageMaps& maps, const LongValueMaps& column);

  /// Stores a value where there is room and returns the bytes of its field.
  Result<std::string> Write(ByteView value, bool apart = false);

  /// Releases the rows of the value that `field` describes. All are checked before one goes.
  Status Release(ByteView field, PageNumber page);

 private:
  RowPages pages_;
};

}  // namespace zent::jet
