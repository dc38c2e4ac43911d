#include <algorithm>

#include "jet/format/JetErrors.h"
#include "jet/format/RowCodec.h"

namespace zent::jet {
namespace {

constexpr std::size_t kCountSize = 2;

}  // namespace

RowBuilder::RowBuilder(const TableDefinition& table)
    : table_(table),
      fixed_(table.FixedAreaSize()),
      variable_(table.variable_slots),
      mask_((table.max_columns + 7U) / 8U) {}

void RowBuilder::Clear() {
  std::fill(fixed_.begin(), fixed_.end(), std::uint8_t{0});
  for (std::string& field : variable_) field.clear();
  std::fill(mask_.begin(), mask_.end(), std::uint8_t{0});
}

void RowBuilder::SetBit(std::uint16_t number) {
  std::uint8_t& byte = mask_[number / 8U];
  byte = static_cast<std::uint8_t>(byte | (1U << (number % 8U)));
}

void RowBuilder::SetBool(const ColumnDefinition& column, bool value) {
  if (value) SetBit(column.number);
}

void RowBuilder::Set(const ColumnDefinition& column, ByteView bytes) {
  SetBit(column.number);
  if (!column.IsFixed()) {
    variable_[column.slot].assign(AsText(bytes));
    return;
  }
  std::copy_n(bytes.begin(), std::min<std::size_t>(bytes.size(), column.length),
              fixed_.begin() + column.fixed_offset);
}

Result<ByteView> RowBuilder::Build() {
  std::size_t size = kCountSize + fixed_.size() + mask_.size();
  for (const std::string& field : variable_) size += field.size();
  if (!variable_.empty()) size += 2 * (variable_.size() + 2);
  if (size > LayoutOf(JetVersion::Jet4).data.max_row) return JetError(kRecordTooLarge);

  row_.resize(size);
  StoreU16(row_, 0, table_.max_columns);
  auto at = std::copy(fixed_.begin(), fixed_.end(), row_.begin() + kCountSize);
  if (!variable_.empty()) {
    // The offsets stand behind the data, that of slot 0 last, and the end of the data before them.
    std::size_t place = size - mask_.size() - 4;
    StoreU16(row_, place + 2, static_cast<std::uint32_t>(variable_.size()));
    for (const std::string& field : variable_) {
      StoreU16(row_, place, static_cast<std::uint32_t>(at - row_.begin()));
      place -= 2;
      at = std::copy(field.begin(), field.end(), at);
    }
    StoreU16(row_, place, static_cast<std::uint32_t>(at - row_.begin()));
  }
  std::copy(mask_.begin(), mask_.end(), row_.end() - static_cast<std::ptrdiff_t>(mask_.size()));
  return ByteView(row_);
}

}  // namespace zent::jet
