#include "jet/format/JetErrors.h"
#include "jet/format/RowCodec.h"

namespace zent::jet {
namespace {

constexpr std::size_t kCountSizeJet4 = 2;
constexpr std::size_t kCountSizeJet3 = 1;

constexpr std::size_t MaskSize(std::size_t columns) { return (columns + 7) / 8; }

}  // namespace

Result<RowView> RowView::Open(const TableDefinition& table, ByteView row, PageNumber page) {
  RowView view;
  if (!view.Reset(table.version, table.variable_slots > 0, row)) {
    return Damaged(page, "a row is shorter than its columns need");
  }
  return view;
}

bool RowView::Reset(JetVersion version, bool has_variable_fields, ByteView row) {
  row_ = row;
  version_ = version;
  variable_count_ = 0;
  jumps_ = 0;
  trailer_ = false;
  return version == JetVersion::Jet4 ? ResetJet4(has_variable_fields)
                                     : ResetJet3(has_variable_fields);
}

// Jet 4: count, fixed area, variable data, end of it, the offsets with slot 0 last, their number,
// mask. A row older than the first variable column has no offsets: they are looked at without
// complaint here, and a field that needs them complains.
bool RowView::ResetJet4(bool has_variable_fields) {
  const std::size_t size = row_.size();
  if (size < kCountSizeJet4) return false;
  column_count_ = LoadU16(row_, 0);
  const std::size_t mask_size = MaskSize(column_count_);
  if (size < kCountSizeJet4 + mask_size) return false;
  mask_ = size - mask_size;
  fixed_end_ = mask_;
  if (!has_variable_fields || mask_ < kCountSizeJet4 + 4) return true;
  const std::size_t count = LoadU16(row_, mask_ - 2);
  if (2 * count + 4 > mask_ - kCountSizeJet4) return true;
  variable_count_ = count;
  offsets_ = mask_ - 4;
  fixed_end_ = offsets_ - 2 * count;
  trailer_ = true;
  return true;
}

// Jet 3: as Jet 4 with bytes; bytes before the number of offsets tell from which slot on 256 is to
// be added once more.
bool RowView::ResetJet3(bool has_variable_fields) {
  const std::size_t size = row_.size();
  if (size < kCountSizeJet3) return false;
  column_count_ = row_[0];
  const std::size_t mask_size = MaskSize(column_count_);
  if (size < kCountSizeJet3 + mask_size) return false;
  mask_ = size - mask_size;
  fixed_end_ = mask_;
  if (!has_variable_fields || mask_ < kCountSizeJet3 + 1) return true;
  const std::size_t count = row_[mask_ - 1];
  jumps_ = (size - 1) / 256;
  if (mask_ < kCountSizeJet3 + 1 + jumps_ + 1 + count) return true;
  variable_count_ = count;
  offsets_ = mask_ - 1 - jumps_ - 1;
  // A last jump that lies beyond the data is there but not used.
  if ((offsets_ - count) / 256 < jumps_) --jumps_;
  fixed_end_ = offsets_ - count;
  trailer_ = true;
  return true;
}

std::size_t RowView::Jet3Offset(std::size_t slot) const {
  std::size_t jumps = 0;
  while (jumps < jumps_ && row_[mask_ - 2 - jumps] <= slot) ++jumps;
  return row_[offsets_ - slot] + 256 * jumps;
}

bool RowView::VariableField(std::size_t slot, std::size_t& start, std::size_t& end) const {
  if (version_ == JetVersion::Jet4) {
    start = LoadU16(row_, offsets_ - 2 * slot);
    end = LoadU16(row_, offsets_ - 2 * slot - 2);
  } else {
    start = Jet3Offset(slot);
    end = Jet3Offset(slot + 1);
  }
  return start <= end && end <= fixed_end_;
}

bool RowView::IsWhole(const TableDefinition& table) const {
  std::size_t end = kCountSizeJet4 + table.FixedAreaSize();
  if (version_ != JetVersion::Jet4 || column_count_ != table.max_columns) return false;
  if (table.variable_slots == 0) return end <= mask_;
  if (!trailer_ || variable_count_ != table.variable_slots) return false;
  for (std::size_t slot = 0; slot <= variable_count_; ++slot) {
    const std::size_t next = LoadU16(row_, offsets_ - 2 * slot);
    if (next < end) return false;
    end = next;
  }
  return end <= fixed_end_;
}

RowView::FieldState RowView::Field(const ColumnDefinition& column, ByteView& bytes) const {
  if (!Has(column)) return FieldState::Null;
  std::size_t start = 0;
  std::size_t end = 0;
  if (column.IsFixed()) {
    start = (version_ == JetVersion::Jet4 ? kCountSizeJet4 : kCountSizeJet3) + column.fixed_offset;
    end = start + column.length;
    // Not fixed_end_: the row may be older than the first variable column, and then what seem to be
    // its offsets are the fixed area.
    if (end > mask_) return FieldState::Damaged;
  } else {
    if (!trailer_) return FieldState::Damaged;
    if (column.slot >= variable_count_) return FieldState::Null;
    if (!VariableField(column.slot, start, end)) return FieldState::Damaged;
  }
  bytes = row_.subspan(start, end - start);
  return FieldState::Present;
}

}  // namespace zent::jet
