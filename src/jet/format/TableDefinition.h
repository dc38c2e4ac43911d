#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/Collation.h"
#include "jet/format/Layout.h"
#include "jet/format/Value.h"

/// A table's definition as the file has it. What the file keeps without a known meaning is kept as
/// well, so that a definition that is read and written is the same byte for byte.
namespace zent::jet {

/// Stands for a column where there is none.
inline constexpr std::uint16_t kNoColumn = 0xFFFF;

inline constexpr std::uint8_t kFixedColumn = 0x01;
inline constexpr std::uint8_t kNullableColumn = 0x02;  ///< set on every ordinary column
inline constexpr std::uint8_t kAutoNumberColumn = 0x04;
inline constexpr std::uint8_t kSystemColumn = 0x10;
inline constexpr std::uint8_t kGuidAutoNumberColumn = 0x40;
inline constexpr std::uint8_t kHyperlinkColumn = 0x80;
inline constexpr std::uint8_t kCompressedColumn = 0x01;  ///< of the extended flags

struct ColumnDefinition {
  std::string name = {};
  ColumnType type = ColumnType::Long;
  std::uint16_t number = 0;   ///< place in the null mask; never used again in the table
  std::uint16_t slot = 0;     ///< variable slot; for fixed columns the slots given out before
  std::uint16_t ordinal = 0;  ///< place in lists
  /// Text: collation; numeric: precision and scale; Access writes 09 04 00 00 for the other types.
  std::array<std::uint8_t, 4> details = {0x09, 0x04, 0, 0};
  std::uint16_t unknown = 0;  ///< Jet 3 alone
  std::uint8_t flags = kNullableColumn;
  std::uint8_t extended_flags = 0;
  std::uint16_t fixed_offset = 0;  ///< within the fixed area; of no meaning for variable columns
  std::uint16_t length = 0;        ///< bytes; text: at most; memo and OLE: 0

  bool IsFixed() const { return (flags & kFixedColumn) != 0; }
  bool IsAutoNumber() const { return (flags & kAutoNumberColumn) != 0; }
  bool IsCompressed() const { return (extended_flags & kCompressedColumn) != 0; }
  bool IsHyperlink() const { return type == ColumnType::Memo && (flags & kHyperlinkColumn) != 0; }
  std::uint8_t precision() const { return details[0]; }
  std::uint8_t scale() const { return details[1]; }
  /// Of a text or memo column of a Jet 4 file.
  Collation collation() const {
    return {static_cast<std::uint16_t>(details[0] | (details[1] << 8U)), details[3]};
  }
  bool operator==(const ColumnDefinition&) const = default;
};

inline constexpr std::uint8_t kUniqueIndex = 0x01;
inline constexpr std::uint8_t kIgnoreNullsIndex = 0x02;
inline constexpr std::uint8_t kRequiredIndex = 0x08;
inline constexpr std::uint8_t kAccessIndex = 0x80;  ///< set on every Jet 4 index that Access makes

struct IndexColumn {
  std::uint16_t column = 0;  ///< column number
  bool ascending = true;
  bool operator==(const IndexColumn&) const = default;
};

/// A tree on disk. Several logical indexes may share it.
struct RealIndex {
  std::vector<IndexColumn> columns = {};
  RowPointer map = {};  ///< usage map: the pages of the tree
  PageNumber root = 0;
  std::uint8_t flags = kAccessIndex;
  std::uint32_t rows_at_compaction = 0;  ///< informational
  std::uint32_t distinct_keys = 0;       ///< ever added; informational
  std::uint32_t leftover = 0;            ///< Jet 4; kept
  /// What stands where the order of unused columns would; kept.
  std::array<std::uint8_t, kMaxIndexColumns> unused_orders = {};

  bool IsUnique() const { return (flags & kUniqueIndex) != 0; }
  bool IgnoresNulls() const { return (flags & kIgnoreNullsIndex) != 0; }
  bool IsRequired() const { return (flags & kRequiredIndex) != 0; }
  bool operator==(const RealIndex&) const = default;
};

enum class IndexKind : std::uint8_t { Ordinary = 0, Primary = 1, Foreign = 2 };
enum class ForeignSide : std::uint8_t { None = 0, Referenced = 1, Referring = 2 };

/// A named index.
struct LogicalIndex {
  std::string name = {};
  std::uint32_t number = 0;  ///< identity within the table; partners name it
  std::uint32_t real = 0;    ///< position in TableDefinition::real_indexes
  IndexKind kind = IndexKind::Ordinary;
  ForeignSide side = ForeignSide::None;
  std::int32_t partner = -1;         ///< number of the index in the other table
  PageNumber other_table = 0;        ///< definition page of the other table
  std::uint8_t cascade_updates = 0;  ///< 1 yes; Access leaves 4 on ordinary indexes
  std::uint8_t cascade_deletes = 0;  ///< 1 yes, 2 sets null
  bool operator==(const LogicalIndex&) const = default;
};

/// Usage maps of a memo or OLE column. Page 0: the column has none (Jet 3).
struct LongValueMaps {
  std::uint16_t column = 0;
  RowPointer owned = {};
  RowPointer free = {};
  bool operator==(const LongValueMaps&) const = default;
};

struct TableDefinition {
  JetVersion version = JetVersion::Jet4;
  std::uint32_t row_count = 0;
  std::int32_t last_auto_number = 0;
  std::uint8_t kind = 'N';           ///< 'N' user table, 'S' system table
  std::uint16_t max_columns = 0;     ///< number of the next new column; counts dropped ones
  std::uint16_t variable_slots = 0;  ///< counts dropped ones
  RowPointer owned_map = {};
  RowPointer free_map = {};
  std::vector<ColumnDefinition> columns = {};  ///< in the order of the file, not of the numbers
  std::vector<RealIndex> real_indexes = {};
  std::vector<LogicalIndex> logical_indexes = {};
  std::vector<LongValueMaps> long_value_maps = {};
  /// Bytes 24 to 39 of Jet 4: the autonumber's step, then leftovers.
  std::array<std::uint8_t, 16> leftovers = {1};

  /// The column of that number, or null.
  const ColumnDefinition* ColumnOf(std::uint16_t number) const;
  ColumnDefinition* ColumnOf(std::uint16_t number);
  /// End of the last fixed column: the size of the fixed area of new rows.
  std::size_t FixedAreaSize() const;
  bool operator==(const TableDefinition&) const = default;
};

/// Reads a definition from its joined stream. `page` is its first page, for errors. Counts, names,
/// column numbers, slots and references to real indexes are checked.
Result<TableDefinition> ParseTableDefinition(JetVersion version, ByteView stream, PageNumber page);

/// The joined stream of `table`. The bytes that belong to the first page's head (type, free space,
/// next page) are set by SplitDefinition.
std::vector<std::uint8_t> SerialiseTableDefinition(const TableDefinition& table);

/// Offsets, in the joined stream, of the numbers that change with rows, so that the whole
/// definition need not be written for them. All lie on the first page but the counters of indexes,
/// which may not: DefinitionPlaceOf tells.
std::size_t RowCountOffset(JetVersion version);
std::size_t AutoNumberOffset(JetVersion version);
std::size_t DistinctKeysOffset(JetVersion version, std::size_t real_index);

}  // namespace zent::jet
