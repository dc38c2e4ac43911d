#include <algorithm>

#include "jet/format/TableDefinition.h"
#include "jet/format/TextCodec.h"

namespace zent::jet {
namespace {

constexpr std::uint32_t kMark = 1625;       // stands before most records of Jet 4
constexpr std::uint32_t kIndexMark = 1923;  // before its real indexes

/// Writes the parts one after the other.
class Writer {
 public:
  explicit Writer(const TableDefinition& table)
      : table_(table), layout_(LayoutOf(table.version)), jet4_(table.version == JetVersion::Jet4) {}

  std::vector<std::uint8_t> Write() {
    WriteHeader();
    for (const RealIndex& index : table_.real_indexes) {
      const MutableBytes at = Append(layout_.definition.counter_size);
      StoreU32(at, 0, index.rows_at_compaction);
      StoreU32(at, 4, index.distinct_keys);
    }
    for (const ColumnDefinition& column : table_.columns) WriteColumn(column);
    for (const ColumnDefinition& column : table_.columns) WriteName(column.name);
    for (const RealIndex& index : table_.real_indexes) WriteRealIndex(index);
    for (const LogicalIndex& index : table_.logical_indexes) WriteLogicalIndex(index);
    for (const LogicalIndex& index : table_.logical_indexes) WriteName(index.name);
    WriteLongMaps();
    StoreU32(stream_, layout_.definition.length, static_cast<std::uint32_t>(stream_.size()));
    return std::move(stream_);
  }

 private:
  /// `size` more bytes of zero; valid until the next call.
  MutableBytes Append(std::size_t size) {
    stream_.resize(stream_.size() + size);
    return MutableBytes(stream_).last(size);
  }

  void WriteHeader() {
    const Layout::Definition& place = layout_.definition;
    const MutableBytes at = Append(place.header_size);
    if (jet4_) StoreU32(at, place.length + 4, kMark);
    StoreU32(at, place.row_count, table_.row_count);
    StoreU32(at, place.auto_number, static_cast<std::uint32_t>(table_.last_auto_number));
    std::copy_n(table_.leftovers.begin(), place.leftover_size,
                at.begin() + static_cast<std::ptrdiff_t>(place.leftovers));
    at[place.kind] = table_.kind;
    StoreU16(at, place.max_columns, table_.max_columns);
    StoreU16(at, place.variable_slots, table_.variable_slots);
    StoreU16(at, place.column_count, static_cast<std::uint32_t>(table_.columns.size()));
    StoreU32(at, place.logical_count, static_cast<std::uint32_t>(table_.logical_indexes.size()));
    StoreU32(at, place.real_count, static_cast<std::uint32_t>(table_.real_indexes.size()));
    StoreU32(at, place.owned_map, table_.owned_map.packed());
    StoreU32(at, place.free_map, table_.free_map.packed());
  }

  void WriteColumn(const ColumnDefinition& column) {
    const Layout::Column& place = layout_.column;
    const MutableBytes at = Append(place.size);
    at[place.type] = static_cast<std::uint8_t>(column.type);
    if (jet4_) StoreU32(at, 1, kMark);
    StoreU16(at, place.number, column.number);
    StoreU16(at, place.slot, column.slot);
    StoreU16(at, place.ordinal, column.ordinal);
    std::copy(column.details.begin(), column.details.end(),
              at.begin() + static_cast<std::ptrdiff_t>(place.details));
    if (place.unknown != 0) StoreU16(at, place.unknown, column.unknown);
    at[place.flags] = column.flags;
    if (place.extended_flags != 0) at[place.extended_flags] = column.extended_flags;
    StoreU16(at, place.offset, column.fixed_offset);
    StoreU16(at, place.length, column.length);
  }

  void WriteName(std::string_view name) {
    const std::string bytes = EncodeName(table_.version, name);
    const MutableBytes length = Append(layout_.definition.name_length_size);
    length[0] = static_cast<std::uint8_t>(bytes.size());
    if (length.size() > 1) length[1] = static_cast<std::uint8_t>(bytes.size() >> 8U);
    stream_.insert(stream_.end(), bytes.begin(), bytes.end());
  }

  void WriteRealIndex(const RealIndex& index) {
    const Layout::RealIndex& place = layout_.real_index;
    const MutableBytes at = Append(place.size);
    if (jet4_) StoreU32(at, 0, kIndexMark);
    for (std::size_t i = 0; i < kMaxIndexColumns; ++i) {
      const std::size_t part = place.columns + 3 * i;
      const bool used = i < index.columns.size();
      StoreU16(at, part, used ? index.columns[i].column : kNoColumn);
      at[part + 2] = index.unused_orders[i];
      if (used) at[part + 2] = index.columns[i].ascending ? 1 : 0;
    }
    StoreU32(at, place.map, index.map.packed());
    StoreU32(at, place.root, index.root);
    if (place.leftover != 0) StoreU32(at, place.leftover, index.leftover);
    at[place.flags] = index.flags;
  }

  void WriteLogicalIndex(const LogicalIndex& index) {
    const Layout::LogicalIndex& place = layout_.logical_index;
    const MutableBytes at = Append(place.size);
    if (jet4_) StoreU32(at, 0, kMark);
    StoreU32(at, place.number, index.number);
    StoreU32(at, place.real, index.real);
    at[place.side] = static_cast<std::uint8_t>(index.side);
    StoreU32(at, place.partner, static_cast<std::uint32_t>(index.partner));
    StoreU32(at, place.other_table, index.other_table);
    at[place.cascade_updates] = index.cascade_updates;
    at[place.cascade_deletes] = index.cascade_deletes;
    at[place.kind] = static_cast<std::uint8_t>(index.kind);
  }

  void WriteLongMaps() {
    for (const LongValueMaps& maps : table_.long_value_maps) {
      const MutableBytes at = Append(10);
      StoreU16(at, 0, maps.column);
      StoreU32(at, 2, maps.owned.packed());
      StoreU32(at, 6, maps.free.packed());
    }
    StoreU16(Append(2), 0, kNoColumn);
  }

  const TableDefinition& table_;
  const Layout& layout_;
  bool jet4_;
  std::vector<std::uint8_t> stream_;
};

}  // namespace

std::vector<std::uint8_t> SerialiseTableDefinition(const TableDefinition& table) {
  return Writer(table).Write();
}

}  // namespace zent::jet
