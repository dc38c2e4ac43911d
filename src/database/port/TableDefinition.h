#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "database/port/FieldType.h"
#include "database/port/FieldValue.h"

/// The structure of a database as values. Numbers and bits are DAO's.
namespace zent {

/// Attribute bits of a table.
inline constexpr std::uint32_t kTableSystem = 0x80000000;
inline constexpr std::uint32_t kTableAttached = 0x40000000;
inline constexpr std::uint32_t kTableAttachedOdbc = 0x20000000;
inline constexpr std::uint32_t kTableHidden = 0x00000001;
inline constexpr std::uint32_t kTableSystemOfEngine = 0x00000002;  ///< alone: a system table, too

/// Attribute bits of a field.
inline constexpr std::uint32_t kFieldFixed = 0x0001;
inline constexpr std::uint32_t kFieldVariable = 0x0002;
inline constexpr std::uint32_t kFieldAutoNumber = 0x0010;
inline constexpr std::uint32_t kFieldHyperlink = 0x8000;

/// Attribute bits of a relation.
inline constexpr std::uint32_t kRelationUnique = 0x0001;  ///< one to one
inline constexpr std::uint32_t kRelationDontEnforce = 0x0002;
inline constexpr std::uint32_t kRelationUpdateCascade = 0x0100;
inline constexpr std::uint32_t kRelationDeleteCascade = 0x1000;

/// A property that is kept with a table, a field or an index: "Caption", "Format" ...
struct PropertyDefinition {
  std::string name;
  FieldType type = FieldType::Text;
  FieldValue value;
  bool operator==(const PropertyDefinition&) const = default;
};

struct FieldDefinition {
  std::string name;
  FieldType type = FieldType::Unknown;
  std::int32_t size = 0;  ///< characters of text, bytes otherwise; 0 for memos and by default
  std::uint32_t attributes = 0;       ///< kField bits
  std::int32_t ordinal_position = 0;  ///< from 0 on, in the order of the table
  bool required = false;
  bool allow_zero_length = true;
  std::string default_value = {};  ///< an expression
  std::string validation_rule = {};
  std::string validation_text = {};
  std::uint8_t precision = 0;  ///< of Decimal
  std::uint8_t scale = 0;
  std::vector<PropertyDefinition> properties = {};  ///< those that are not members above
  bool operator==(const FieldDefinition&) const = default;
};

struct IndexField {
  std::string name;
  bool descending = false;
  bool operator==(const IndexField&) const = default;
};

struct IndexDefinition {
  std::string name;
  std::vector<IndexField> fields;
  bool primary = false;
  bool unique = false;
  bool required = false;
  bool ignore_nulls = false;
  bool foreign = false;  ///< made by a relation, and made again with it
  std::vector<PropertyDefinition> properties = {};
  bool operator==(const IndexDefinition&) const = default;
};

struct RelationField {
  std::string name;          ///< in the table on the "one" side
  std::string foreign_name;  ///< in the table on the "many" side
  bool operator==(const RelationField&) const = default;
};

struct RelationDefinition {
  std::string name;
  std::string table;          ///< the "one" side
  std::string foreign_table;  ///< the "many" side
  std::vector<RelationField> fields;
  std::uint32_t attributes = 0;  ///< kRelation bits
  bool operator==(const RelationDefinition&) const = default;
};

/// A table by its name and attributes alone, as lists of tables give it.
struct TableEntry {
  std::string name;
  std::uint32_t attributes = 0;  ///< kTable bits
  bool operator==(const TableEntry&) const = default;
};

struct TableDefinition {
  std::string name;
  std::uint32_t attributes = 0;   ///< kTable bits
  std::string connect = {};       ///< of an attached table
  std::string source_table = {};  ///< of an attached table
  std::string validation_rule = {};
  std::string validation_text = {};
  std::vector<FieldDefinition> fields = {};
  std::vector<IndexDefinition> indexes = {};
  std::vector<PropertyDefinition> properties = {};
};

}  // namespace zent
