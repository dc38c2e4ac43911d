#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/Status.h"
#include "jet/catalog/Table.h"
#include "jet/format/RowCodec.h"
#include "jet/sql/expressions/Evaluator.h"
#include "jet/store/RowStore.h"

namespace zent::jet {

/// The present row of each table of a query, seen as one long row: the columns of the first table,
/// then those of the second ... then those of the row around it, for a query within an expression.
/// A field is decoded when it is asked for, and once a row; long values are fetched only then.
class RowFrame : public RowValues {
 public:
  /// `outer` may be null.
  explicit RowFrame(RowValues* outer) : outer_(outer) {}

  /// Returns the number of the table's first column.
  std::size_t AddTable(Table& table);
  std::size_t table_count() const { return tables_.size(); }
  Table& table(std::size_t i) const { return *tables_[i].table; }
  std::size_t first_column(std::size_t i) const { return tables_[i].first_column; }
  std::size_t column_count() const { return fields_.size(); }

  /// Sets the row of table `i` to what a scan stands on. The bytes must stay until the next row.
  Status Set(std::size_t i, RowPointer at, ByteView bytes, PageNumber page);
  /// Fetches the row `at`; its page is held. A row pointer of 0 is the row of nulls.
  Status Fetch(std::size_t i, RowPointer at);
  /// The row of nulls, which a left join puts in place of a missing one.
  void SetNulls(std::size_t i);
  /// 0 for the row of nulls.
  RowPointer at(std::size_t i) const { return tables_[i].at; }

  Result<const Value*> At(std::size_t column) override;
  /// Puts the value of a column in place of `value`, whose memory is used again.
  Status Load(std::size_t column, Value& value);

 private:
  struct TableRow {
    Table* table = nullptr;
    std::size_t first_column = 0;
    RowPointer at = {};
    PageNumber page = 0;
    RowView view = {};
    std::optional<StoredRow> held = {};
    std::uint64_t stamp = 0;  ///< changes with the row
  };
  struct FieldPlace {
    std::size_t table = 0;
    const ColumnDefinition* column = nullptr;
    std::uint64_t stamp = 0;  ///< of the row that `value` is of
    Value value = {};
  };
  Status Decode(const FieldPlace& field, Value& value);

  RowValues* outer_;
  std::vector<TableRow> tables_;
  std::vector<FieldPlace> fields_;
  std::uint64_t last_stamp_ = 0;
};

}  // namespace zent::jet
