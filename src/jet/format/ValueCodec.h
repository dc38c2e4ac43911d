#pragma once

#include <string>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/TableDefinition.h"
#include "jet/format/Value.h"

/// Values from the bytes of fields, and back.
namespace zent::jet {

/// The value of a field that is present and no bool. Memo and OLE: the whole value's bytes, as the
/// long value has them, not its descriptor. Bytes of the wrong number for the type are damage.
Result<Value> DecodeField(JetVersion version, const ColumnDefinition& column, ByteView bytes,
                          PageNumber page);

/// Puts the bytes of `value` for `column` in place of `bytes`; Jet 4 form. `value` is neither null
/// nor bool and has the type of the column (kDataTypeConversion otherwise). Text that is too long
/// is kFieldTooSmall. Memo and OLE: the bytes of the long value.
Status EncodeField(const ColumnDefinition& column, const Value& value, std::string& bytes);

}  // namespace zent::jet
