#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "jet/format/JetErrors.h"
#include "jet/format/TableDefinition.h"
#include "jet/format/TextCodec.h"

namespace zent::jet {
namespace {

constexpr std::size_t kLongMapSize = 10;  // u16 column, two row pointers
// More than any file has; keeps a lying count from costing memory.
constexpr std::uint32_t kMaxIndexCount = 1024;
// Of those with a tree, which a file has 32 of at most: their counters are on the first page.
constexpr std::uint32_t kMaxRealIndexCount = 128;

ColumnDefinition ReadColumn(const Layout& layout, ByteView at) {
  const Layout::Column& place = layout.column;
  ColumnDefinition column;
  column.type = static_cast<ColumnType>(at[place.type]);
  column.number = LoadU16(at, place.number);
  column.slot = LoadU16(at, place.slot);
  column.ordinal = LoadU16(at, place.ordinal);
  std::copy_n(at.begin() + static_cast<std::ptrdiff_t>(place.details), column.details.size(),
              column.details.begin());
  if (place.unknown != 0) column.unknown = LoadU16(at, place.unknown);
  column.flags = at[place.flags];
  if (place.extended_flags != 0) column.extended_flags = at[place.extended_flags];
  column.fixed_offset = LoadU16(at, place.offset);
  column.length = LoadU16(at, place.length);
  return column;
}

void ReadRealIndex(const Layout& layout, ByteView at, RealIndex& index) {
  const Layout::RealIndex& place = layout.real_index;
  for (std::size_t i = 0; i < kMaxIndexColumns; ++i) {
    const std::size_t part = place.columns + 3 * i;
    const std::uint16_t column = LoadU16(at, part);
    if (column == kNoColumn) {
      index.unused_orders[i] = at[part + 2];
    } else {
      index.columns.push_back({column, at[part + 2] == 1});
    }
  }
  index.map = RowPointer::FromPacked(LoadU32(at, place.map));
  index.root = LoadU32(at, place.root);
  if (place.leftover != 0) index.leftover = LoadU32(at, place.leftover);
  index.flags = at[place.flags];
}

LogicalIndex ReadLogicalIndex(const Layout& layout, ByteView at) {
  const Layout::LogicalIndex& place = layout.logical_index;
  LogicalIndex index;
  index.number = LoadU32(at, place.number);
  index.real = LoadU32(at, place.real);
  index.side = static_cast<ForeignSide>(at[place.side]);
  index.partner = static_cast<std::int32_t>(LoadU32(at, place.partner));
  index.other_table = LoadU32(at, place.other_table);
  index.cascade_updates = at[place.cascade_updates];
  index.cascade_deletes = at[place.cascade_deletes];
  index.kind = static_cast<IndexKind>(at[place.kind]);
  return index;
}

/// Reads the parts of a stream one after the other; the first fault stops all that follows.
class Reader {
 public:
  Reader(JetVersion version, ByteView stream, PageNumber page)
      : layout_(LayoutOf(version)), stream_(stream), page_(page) {
    table_.version = version;
  }

  Result<TableDefinition> Read() {
    for (Status (Reader::*part)() :
         {&Reader::ReadHeader, &Reader::ReadCounters, &Reader::ReadColumns,
          &Reader::ReadColumnNames, &Reader::ReadRealIndexes, &Reader::ReadLogicalIndexes,
          &Reader::ReadIndexNames, &Reader::ReadLongMaps, &Reader::CheckColumns,
          &Reader::CheckPlaces}) {
      if (Status read = (this->*part)(); !read.ok()) return read.error();
    }
    return std::move(table_);
  }

 private:
  RuntimeError Fault(std::string_view what) const {
    return Damaged(page_, fmt::format("table definition: {}", what));
  }

  Status ReadHeader() {
    const Layout::Definition& place = layout_.definition;
    if (stream_.size() < place.header_size) return Fault("it is cut");
    table_.row_count = LoadU32(stream_, place.row_count);
    table_.last_auto_number = static_cast<std::int32_t>(LoadU32(stream_, place.auto_number));
    std::copy_n(stream_.begin() + static_cast<std::ptrdiff_t>(place.leftovers), place.leftover_size,
                table_.leftovers.begin());
    table_.kind = stream_[place.kind];
    table_.max_columns = LoadU16(stream_, place.max_columns);
    table_.variable_slots = LoadU16(stream_, place.variable_slots);
    const std::size_t columns = LoadU16(stream_, place.column_count);
    const std::uint32_t logical = LoadU32(stream_, place.logical_count);
    const std::uint32_t real = LoadU32(stream_, place.real_count);
    table_.owned_map = RowPointer::FromPacked(LoadU32(stream_, place.owned_map));
    table_.free_map = RowPointer::FromPacked(LoadU32(stream_, place.free_map));
    at_ = place.header_size;
    if (columns > kMaxColumns) return Fault("too many columns");
    if (logical > kMaxIndexCount || real > kMaxRealIndexCount) return Fault("too many indexes");
    table_.columns.resize(columns);
    table_.logical_indexes.resize(logical);
    table_.real_indexes.resize(real);
    return {};
  }

  /// The next `size` bytes.
  bool Take(std::size_t size, ByteView& bytes) {
    if (!Fits(stream_, at_, size)) return false;
    bytes = stream_.subspan(at_, size);
    at_ += size;
    return true;
  }

  Status ReadCounters() {
    for (RealIndex& index : table_.real_indexes) {
      ByteView at;
      if (!Take(layout_.definition.counter_size, at)) return Fault("its index counters are cut");
      index.rows_at_compaction = LoadU32(at, 0);
      index.distinct_keys = LoadU32(at, 4);
    }
    return {};
  }

  Status ReadColumns() {
    for (ColumnDefinition& column : table_.columns) {
      ByteView at;
      if (!Take(layout_.column.size, at)) return Fault("its columns are cut");
      column = ReadColumn(layout_, at);
    }
    return {};
  }

  bool ReadName(std::string& name) {
    ByteView at;
    if (!Take(layout_.definition.name_length_size, at)) return false;
    const std::size_t length = at.size() == 1 ? at[0] : LoadU16(at, 0);
    if (table_.version == JetVersion::Jet4 && length % 2 != 0) return false;
    if (!Take(length, at)) return false;
    name = DecodeName(table_.version, at);
    return true;
  }

  Status ReadColumnNames() {
    for (ColumnDefinition& column : table_.columns) {
      if (!ReadName(column.name)) return Fault("the name of a column is cut");
    }
    return {};
  }

  Status ReadRealIndexes() {
    for (RealIndex& index : table_.real_indexes) {
      ByteView at;
      if (!Take(layout_.real_index.size, at)) return Fault("its indexes are cut");
      ReadRealIndex(layout_, at, index);
      for (const IndexColumn& part : index.columns) {
        if (table_.ColumnOf(part.column) == nullptr) return Fault("an index on no column");
      }
    }
    return {};
  }

  Status ReadLogicalIndexes() {
    for (LogicalIndex& index : table_.logical_indexes) {
      ByteView at;
      if (!Take(layout_.logical_index.size, at)) return Fault("its indexes are cut");
      index = ReadLogicalIndex(layout_, at);
      if (index.real >= table_.real_indexes.size()) return Fault("an index without a tree");
    }
    return {};
  }

  Status ReadIndexNames() {
    for (LogicalIndex& index : table_.logical_indexes) {
      if (!ReadName(index.name)) return Fault("the name of an index is cut");
    }
    return {};
  }

  Status ReadLongMaps() {
    ByteView at;
    while (Fits(stream_, at_, 2) && LoadU16(stream_, at_) != kNoColumn) {
      if (!Take(kLongMapSize, at)) return Fault("its list of long values is cut");
      table_.long_value_maps.push_back({.column = LoadU16(at, 0),
                                        .owned = RowPointer::FromPacked(LoadU32(at, 2)),
                                        .free = RowPointer::FromPacked(LoadU32(at, 6))});
    }
    return Take(2, at) ? Status() : Status(Fault("its list of long values has no end"));
  }

  Status CheckColumns() {
    std::vector<std::uint16_t> numbers;
    std::vector<std::uint16_t> slots;
    for (const ColumnDefinition& column : table_.columns) {
      if (column.number >= table_.max_columns) return Fault("a column number beyond the last");
      numbers.push_back(column.number);
      if (column.IsFixed()) continue;
      if (column.slot >= table_.variable_slots) return Fault("a variable slot beyond the last");
      slots.push_back(column.slot);
    }
    for (std::vector<std::uint16_t>* all : {&numbers, &slots}) {
      std::sort(all->begin(), all->end());
      if (std::adjacent_find(all->begin(), all->end()) != all->end()) {
        return Fault("two columns with the same number");
      }
    }
    return {};
  }

  /// A change of one field would change the other one as well. Columns that were dropped are not
  /// told: their places may be used again.
  Status CheckPlaces() {
    std::vector<std::pair<std::size_t, std::size_t>> places;
    for (const ColumnDefinition& column : table_.columns) {
      if (!column.IsFixed() || column.type == ColumnType::Bool) continue;
      places.emplace_back(column.fixed_offset, std::size_t{column.fixed_offset} + column.length);
    }
    std::sort(places.begin(), places.end());
    std::size_t taken = 0;
    for (const auto& [begin, end] : places) {
      if (begin < taken) return Fault("two columns in one place");
      taken = std::max(taken, end);
    }
    return {};
  }

  const Layout& layout_;
  ByteView stream_;
  PageNumber page_;
  std::size_t at_ = 0;
  TableDefinition table_;
};

}  // namespace

Result<TableDefinition> ParseTableDefinition(JetVersion version, ByteView stream, PageNumber page) {
  return Reader(version, stream, page).Read();
}

}  // namespace zent::jet
