#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/TableDefinition.h"

/// Rows: the fixed area, the variable fields, their offsets, and the mask of what is not null.
namespace zent::jet {

/// A row as it lies on its page. Opening it costs a few checks; a field costs one more. The page
/// must outlive it.
class RowView {
 public:
  /// `page` is for errors. `table` tells whether rows have variable fields at all.
  static Result<RowView> Open(const TableDefinition& table, ByteView row, PageNumber page);

  /// As Open, for scans: false on damage.
  bool Reset(JetVersion version, bool has_variable_fields, ByteView row);
  RowView() = default;

  /// Columns that the table had when the row was written.
  std::size_t column_count() const { return column_count_; }

  /// True when the bit of `column` is set: not null, or the value of a bool column.
  bool Has(const ColumnDefinition& column) const {
    return column.number < column_count_ &&
           (row_[mask_ + column.number / 8U] & (1U << (column.number % 8U))) != 0;
  }

  /// Whether the row has as many columns and variable fields as `table` and each field lies behind
  /// the one before, the first behind the fixed area. Jet 4.
  bool IsWhole(const TableDefinition& table) const;

  enum class FieldState : std::uint8_t { Null, Present, Damaged };
  /// The bytes of a column that is no bool. Damaged: they do not lie within the row.
  FieldState Field(const ColumnDefinition& column, ByteView& bytes) const;

 private:
  bool ResetJet3(bool has_variable_fields);
  bool ResetJet4(bool has_variable_fields);
  bool VariableField(std::size_t slot, std::size_t& start, std::size_t& end) const;
  std::size_t Jet3Offset(std::size_t slot) const;

  ByteView row_;
  JetVersion version_ = JetVersion::Jet4;
  std::size_t column_count_ = 0;
  std::size_t mask_ = 0;       ///< offset of the null mask
  std::size_t fixed_end_ = 0;  ///< variable fields cannot pass it
  std::size_t variable_count_ = 0;
  std::size_t offsets_ = 0;  ///< place of the offset of slot 0
  std::size_t jumps_ = 0;    ///< Jet 3: jump bytes in use
  bool trailer_ = false;     ///< there are offsets of variable fields
};

/// Builds the rows of one table, one after the other, in one buffer. Jet 4 alone.
class RowBuilder {
 public:
  /// `table` must outlive it and keep its columns.
  explicit RowBuilder(const TableDefinition& table);

  /// Begins a row whose fields are all null (bools: false).
  void Clear();
  /// The value of a bool column.
  void SetBool(const ColumnDefinition& column, bool value);
  /// The bytes of any other column, as EncodeField makes them. Fixed columns: bytes beyond
  /// the column's length are left out.
  void Set(const ColumnDefinition& column, ByteView bytes);

  /// The row, valid until the next call; kRecordTooLarge when it does not fit a page.
  Result<ByteView> Build();

 private:
  void SetBit(std::uint16_t number);

  const TableDefinition& table_;
  std::vector<std::uint8_t> fixed_;
  std::vector<std::string> variable_;
  std::vector<std::uint8_t> mask_;
  std::vector<std::uint8_t> row_;
};

}  // namespace zent::jet
