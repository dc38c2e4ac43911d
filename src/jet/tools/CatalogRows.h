#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/store/TableStore.h"

namespace zent::jet {

/// The fields of one row of a system table, by name; missing columns and values that cannot be read
/// are null.
class CatalogRow {
 public:
  CatalogRow(TableStore& table, const RowScan& scan) : table_(table), scan_(scan) {}

  Value Field(std::string_view column) const;
  /// 0, and the empty text, for a null.
  std::int32_t Number(std::string_view column) const;
  std::string TextOf(std::string_view column) const;
  /// The bytes of an OLE or binary column; its error when they cannot be read.
  Result<std::string> Bytes(std::string_view column) const;
  RowPointer at() const { return scan_.at(); }

 private:
  TableStore& table_;
  const RowScan& scan_;
};

/// Calls `visit` for each row of a table until it returns false; the error that stopped the scan.
Status ForEachCatalogRow(TableStore& table, const std::function<bool(const CatalogRow&)>& visit);

}  // namespace zent::jet
