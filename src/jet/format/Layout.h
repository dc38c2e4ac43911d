#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>

/// Where things stand in a file of either version. The numbers are those of the public descriptions
/// of the format (those of mdbtools), measured again on real files.
namespace zent::jet {

/// Jet 3 is Access 97; Jet 4 is Access 2000 to 2003.
enum class JetVersion : std::uint8_t { Jet3, Jet4 };

using PageNumber = std::uint32_t;

/// A row: the slot of a page. In the file: one byte row, three bytes page.
struct RowPointer {
  PageNumber page = 0;
  std::uint8_t row = 0;

  /// As a number of the file, least significant byte first.
  constexpr std::uint32_t packed() const { return (page << 8U) | row; }
  static constexpr RowPointer FromPacked(std::uint32_t value) {
    return {.page = value >> 8U, .row = static_cast<std::uint8_t>(value)};
  }
  auto operator<=>(const RowPointer&) const = default;
};

/// First byte of a page.
enum class PageType : std::uint8_t {
  Header = 0,
  Data = 1,  ///< rows of a table, long values or usage maps: the owner tells
  Definition = 2,
  IndexNode = 3,
  IndexLeaf = 4,
  Bitmap = 5,  ///< part of a usage map that is spread over pages
};

inline constexpr PageNumber kGlobalMapPage = 1;
inline constexpr RowPointer kGlobalMap = {.page = kGlobalMapPage, .row = 0};
inline constexpr PageNumber kObjectsPage = 2;        ///< definition of MSysObjects
inline constexpr PageNumber kAcesPage = 3;           ///< MSysACEs
inline constexpr PageNumber kQueriesPage = 4;        ///< MSysQueries
inline constexpr PageNumber kRelationshipsPage = 5;  ///< MSysRelationships

inline constexpr std::uint32_t kUsageMapOwner = 0;            ///< owner of usage map pages
inline constexpr std::uint32_t kLongValueOwner = 0x4C41564C;  ///< "LVAL", owner of long value pages

inline constexpr std::size_t kMaxRowsPerPage = 255;
inline constexpr std::size_t kMaxColumns = 255;
inline constexpr std::size_t kMaxIndexes = 32;
inline constexpr std::size_t kMaxIndexColumns = 10;
inline constexpr std::size_t kMaxTextUnits = 255;  ///< characters of a text column
inline constexpr std::size_t kMaxNameUnits = 64;   ///< characters of a name

/// Offsets and sizes, one record per version. A field that a version lacks is 0.
struct Layout {
  JetVersion version;
  std::size_t page_size;
  std::uint64_t max_file_size;

  struct DataPage {
    std::size_t free_space, owner, row_count, directory;
    std::size_t max_row;             ///< bytes of a table's row
    std::size_t max_long_value_row;  ///< bytes of a long value's row
    std::size_t max_inline_value;    ///< bytes of a long value kept in the row
    std::size_t usage_map_row;       ///< usual length of a usage map's row
  } data;

  struct Definition {
    std::size_t length, row_count, auto_number, leftovers, leftover_size, kind, max_columns,
        variable_slots, column_count, logical_count, real_count, owned_map, free_map, header_size;
    std::size_t counter_size;
    std::size_t name_length_size;
  } definition;

  struct Column {
    std::size_t size, type, number, slot, ordinal, details, unknown, flags, extended_flags, offset,
        length;
  } column;

  struct RealIndex {
    std::size_t size, columns, map, root, leftover, flags;
  } real_index;

  struct LogicalIndex {
    std::size_t size, number, real, side, partner, other_table, cascade_updates, cascade_deletes,
        kind;
  } logical_index;

  struct IndexPage {
    std::size_t free_space, owner, previous, next, tail, prefix, prefix_size, level, mask,
        mask_size, entries;
  } index_page;
};

/// The layout of files of `version`.
const Layout& LayoutOf(JetVersion version);

}  // namespace zent::jet
