#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jet/format/PropertyBlob.h"
#include "jet/format/Value.h"

/// What a new table, column or index shall be.
namespace zent::jet {

struct NewColumn {
  std::string name = {};
  ColumnType type = ColumnType::Long;
  /// Text: characters, 1 to 255; binary: bytes, 1 to 255. Of no meaning for the other types.
  std::uint16_t size = 255;
  std::uint8_t precision = 18;  ///< numeric: digits, 1 to 28
  std::uint8_t scale = 0;       ///< numeric: digits behind the point
  bool auto_number = false;     ///< long: counts; GUID: a new one for each row
  bool required = false;
  bool allow_zero_length = true;  ///< text and memo
  bool compressed = true;         ///< text and memo: short Latin text takes a byte per character
  bool hyperlink = false;         ///< memo
  bool fixed = false;             ///< text and binary: the row holds the whole size
  /// Of a column that is added: it is shown before the one that has this ordinal; 0: behind all.
  std::uint16_t ordinal = 0;
  /// Those beyond Required and AllowZeroLength, which follow from the members above.
  std::vector<Property> properties = {};
};

struct NewIndex {
  struct Column {
    std::string name = {};
    bool descending = false;
  };
  std::string name = {};
  std::vector<Column> columns = {};
  bool unique = false;
  bool primary = false;  ///< unique and without nulls as well
  bool required = false;
  bool ignore_nulls = false;
};

struct NewTable {
  std::string name = {};
  std::vector<NewColumn> columns = {};
  std::vector<NewIndex> indexes = {};
  std::vector<Property> properties = {};
  std::int32_t flags = 0;  ///< of its row in MSysObjects: 8 hidden, 2 kept by the application
};

}  // namespace zent::jet
