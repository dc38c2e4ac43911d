#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jet/dao/Constants.h"
#include "jet/format/PropertyBlob.h"

namespace zent::jet {

/// A field of a table, of a new one, or of a recordset.
struct Field {
  std::string name = {};
  DataType type = DataType::ShortText;
  std::uint16_t size = 0;  ///< text: characters; binary: bytes; the others as their type has it
  std::uint32_t attributes = 0;
  bool required = false;
  bool allow_zero_length = false;
  std::string default_value = {};  ///< an expression: "0", "\"new\"", "Now()"
  std::string validation_rule = {};
  std::string validation_text = {};
  std::uint16_t ordinal_position = 0;  ///< of one that is appended: 0: behind the others
  std::uint8_t precision = 18;         ///< of a decimal
  std::uint8_t scale = 0;
  bool compressed = true;         ///< text and memo: short Latin text takes a byte per character
  std::string source_table = {};  ///< of a recordset: where it comes from; empty: calculated
  std::string source_field = {};
  /// The properties of the file that have no member above: Description, Caption, Format ...
  std::vector<Property> properties = {};

  bool IsAutoNumber() const { return (attributes & kAutoIncrementField) != 0; }
  const Property* FindProperty(std::string_view property) const;
};

/// A field to be appended. A text field without a size has 255 characters.
Field CreateField(std::string name, DataType type, std::uint16_t size = 0);

/// A field of an index.
struct IndexField {
  std::string name = {};
  bool descending = false;
};

struct Index {
  std::string name = {};
  std::vector<IndexField> fields = {};
  bool primary = false;
  bool unique = false;
  bool required = false;
  bool ignore_nulls = false;
  bool foreign = false;              ///< made by a relation
  std::uint32_t distinct_count = 0;  ///< keys ever added
};

/// An index to be appended. Fields are named as in "Name", "+Name" or "-Name" (descending).
Index CreateIndex(std::string name, const std::vector<std::string>& fields);

/// A field of a relation: its name in the referenced table and in the referring one.
struct RelationField {
  std::string name = {};
  std::string foreign_name = {};
};

struct Relation {
  std::string name = {};
  std::string table = {};          ///< the referenced ("one") side
  std::string foreign_table = {};  ///< the referring ("many") side
  std::uint32_t attributes = 0;
  std::vector<RelationField> fields = {};
};

}  // namespace zent::jet
