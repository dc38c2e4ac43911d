#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/store/TableStore.h"

namespace zent::jet {

class SystemTable;

/// One row of a system table. What does not hold what its column should is an error that stays.
class SystemRow {
 public:
  /// `bytes` must outlive it; `page` is where they lie.
  SystemRow(SystemTable& table, ByteView bytes, PageNumber page)
      : table_(table), bytes_(bytes), page_(page) {}

  /// Values by the place of the column's name at Open; null is empty or 0.
  std::string Text(std::size_t column) { return Get<std::string>(column); }
  std::int32_t Long(std::size_t column) { return Get<std::int32_t>(column); }
  std::int16_t Int(std::size_t column) { return Get<std::int16_t>(column); }
  Date DateOf(std::size_t column) { return Get<Date>(column); }
  std::string Bytes(std::size_t column) { return Get<Binary>(column).bytes; }

  /// The first error; else ok.
  const Status& status() const { return status_; }

 private:
  template <typename T>
  T Get(std::size_t column);

  SystemTable& table_;
  ByteView bytes_;
  PageNumber page_;
  Status status_;
};

/// A table of the catalog, read by the names of its columns.
class SystemTable {
 public:
  /// `columns`: the names of those to be read. One that is not there is damage. `maps` must
  /// outlive it.
  static Result<SystemTable> Open(UsageMaps& maps, PageNumber page,
                                  std::span<const std::string_view> columns);

  TableStore& store() { return *store_; }
  /// The place in the definition of a column named at Open.
  std::size_t position(std::size_t column) const { return positions_[column]; }

  /// The rows whose `columns` have `values`, by an index over exactly these columns. Nothing when
  /// there is no such index, or it cannot be searched: their order is not known. An entry that
  /// leads to a row with other values is damage.
  Result<std::optional<std::vector<RowPointer>>> Seek(std::span<const std::size_t> columns,
                                                      std::span<const Value> values);

 private:
  SystemTable() = default;
  TableIndex* IndexOver(std::span<const std::size_t> columns);
  Result<bool> HasKey(TableIndex& index, RowPointer at, std::string_view key);

  std::unique_ptr<TableStore> store_;
  std::vector<std::size_t> positions_;
};

}  // namespace zent::jet
