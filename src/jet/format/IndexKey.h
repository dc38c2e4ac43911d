#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/format/TableDefinition.h"
#include "jet/format/Value.h"

/// Keys of indexes. They compare as unsigned bytes, shorter before longer.
namespace zent::jet {

/// What a key needs to know of a column.
struct KeyColumn {
  JetVersion version = JetVersion::Jet4;
  ColumnType type = ColumnType::Long;
  bool ascending = true;
  Collation collation = kGeneralLegacy;
};

/// The key columns of `index`; kCannotOpenDatabase when it names a column that is not there.
Result<std::vector<KeyColumn>> KeyColumnsOf(const TableDefinition& table, const RealIndex& index);

/// True when text of that collation can be put in order. Jet 3: the code page must be 1252.
bool IsCovered(JetVersion version, const ColumnDefinition& column);

/// Appends the key of one value. kReadOnly for a collation that is not covered,
/// kDataTypeConversion for a value of another type than the column's.
Status AppendKey(const KeyColumn& column, const Value& value, std::string& key);

/// As AppendKey, of the bytes of a field of Jet 4 text, `stored`.
Status AppendStoredText(const KeyColumn& column, ByteView stored, std::string& key);

/// The key of a row: `values` are those of `columns`, in their order.
Result<std::string> IndexKey(std::span<const KeyColumn> columns, std::span<const Value> values);

}  // namespace zent::jet
