#pragma once

#include <cstdint>

#include "jet/format/TableDefinition.h"

/// The numbers by which DAO names things.
namespace zent::jet {

/// Types of fields.
enum class DataType : std::uint8_t {
  Boolean = 1,
  Byte = 2,
  Integer = 3,
  Long = 4,
  Currency = 5,
  Single = 6,
  Double = 7,
  Date = 8,
  Binary = 9,
  ShortText = 10,  ///< dbText
  LongBinary = 11,
  Memo = 12,
  Guid = 15,
  Decimal = 20,
};

/// The type of the file; both have the same numbers but for decimals.
ColumnType ToColumnType(DataType type);
DataType ToDataType(ColumnType type);
/// Whether a number from outside is one of the types above.
bool IsDataType(DataType type);

// Attributes of a TableDef.
inline constexpr std::uint32_t kHiddenTable = 0x00000001;
inline constexpr std::uint32_t kSystemTable = 0x80000002;
inline constexpr std::uint32_t kAttachedOdbc = 0x20000000;
inline constexpr std::uint32_t kAttachedTable = 0x40000000;

// Attributes of a Field.
inline constexpr std::uint32_t kDescending = 0x0001;  ///< of a field of an index
inline constexpr std::uint32_t kFixedField = 0x0001;
inline constexpr std::uint32_t kVariableField = 0x0002;
inline constexpr std::uint32_t kAutoIncrementField = 0x0010;
inline constexpr std::uint32_t kUpdatableField = 0x0020;
inline constexpr std::uint32_t kSystemField = 0x2000;
inline constexpr std::uint32_t kHyperlinkField = 0x8000;

// Attributes of a Relation.
inline constexpr std::uint32_t kRelationUnique = 0x00000001;
inline constexpr std::uint32_t kRelationDontEnforce = 0x00000002;
inline constexpr std::uint32_t kRelationUpdateCascade = 0x00000100;
inline constexpr std::uint32_t kRelationDeleteCascade = 0x00001000;
inline constexpr std::uint32_t kRelationLeft = 0x01000000;
inline constexpr std::uint32_t kRelationRight = 0x02000000;

enum class RecordsetType : std::uint8_t {
  Default = 0,   ///< Table for the name of a local table, else Dynaset
  Table = 1,     ///< the table itself: Index and Seek
  Dynaset = 2,   ///< rows of one table that a SELECT has found; others become a Snapshot
  Snapshot = 4,  ///< a copy
};

enum class EditMode : std::uint8_t { None = 0, InProgress = 1, Add = 2 };

}  // namespace zent::jet
