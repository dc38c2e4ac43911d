#include "jet/dao/Conversion.h"

#include <algorithm>

#include "base/CaseFold.h"
#include "jet/format/JetErrors.h"
#include "jet/transfer/TableDescription.h"

namespace zent::jet {
namespace {

constexpr std::string_view kDefaultValue = "DefaultValue";
constexpr std::string_view kValidationRule = "ValidationRule";
constexpr std::string_view kValidationText = "ValidationText";

/// Takes a text property out of the list; empty without one.
std::string TakeText(std::vector<Property>& properties, std::string_view name) {
  const auto at = std::find_if(properties.begin(), properties.end(), [&](const Property& property) {
    return SameName(property.name, name);
  });
  if (at == properties.end()) return {};
  const Value value = PropertyValue(JetVersion::Jet4, *at);
  properties.erase(at);
  const Text* const text = std::get_if<Text>(&value);
  return text == nullptr ? std::string() : *text;
}

Status AddText(std::vector<Property>& properties, std::string_view name, ColumnType type,
               const std::string& text) {
  if (text.empty()) return {};
  Result<Property> property = MakeProperty(name, type, true, Value(Text(text)));
  if (!property.ok()) return property.status();
  properties.push_back(std::move(property.value()));
  return {};
}

std::uint16_t SizeOf(const NewColumn& column) {
  constexpr std::uint16_t kDecimalSize = 16;
  switch (column.type) {
    case ColumnType::Text:
    case ColumnType::Binary:
      return column.size;
    case ColumnType::Bool:
      return 1;
    case ColumnType::Numeric:
      return kDecimalSize;
    default:
      return static_cast<std::uint16_t>(FixedSizeOf(column.type));
  }
}

std::uint32_t AttributesOf(const ColumnDefinition& column, const NewColumn& described) {
  const bool fixed = column.IsFixed() || column.type == ColumnType::Bool;
  std::uint32_t attributes = (fixed ? kFixedField : kVariableField) | kUpdatableField;
  if (described.auto_number) attributes |= kAutoIncrementField;
  if (described.hyperlink) attributes |= kHyperlinkField;
  if ((column.flags & kSystemColumn) != 0) attributes |= kSystemField;
  return attributes;
}

}  // namespace

Result<Field> FieldOf(const Table& table, std::size_t position) {
  Result<NewColumn> described = DescribeColumn(table, position);
  if (!described.ok()) return described.error();
  NewColumn& column = described.value();
  const ColumnDefinition& definition = table.definition().columns[position];
  Field field;
  field.name = column.name;
  field.type = ToDataType(column.type);
  field.size = SizeOf(column);
  field.attributes = AttributesOf(definition, column);
  field.required = column.required;
  field.allow_zero_length = column.allow_zero_length;
  field.ordinal_position = definition.ordinal;
  field.precision = column.precision;
  field.scale = column.scale;
  field.compressed = column.compressed;
  field.source_table = table.name();
  field.source_field = column.name;
  field.default_value = TakeText(column.properties, kDefaultValue);
  field.validation_rule = TakeText(column.properties, kValidationRule);
  field.validation_text = TakeText(column.properties, kValidationText);
  field.properties = std::move(column.properties);
  return field;
}

Result<std::vector<Field>> FieldsOf(const Table& table) {
  std::vector<Field> fields;
  for (const std::size_t position : table.display_order()) {
    Result<Field> field = FieldOf(table, position);
    if (!field.ok()) return field.error();
    fields.push_back(std::move(field.value()));
  }
  return fields;
}

std::vector<Index> IndexesOf(const TableDefinition& table) {
  std::vector<Index> indexes;
  for (const LogicalIndex& logical : table.logical_indexes) {
    if (logical.kind == IndexKind::Foreign && logical.side == ForeignSide::Referenced) continue;
    const RealIndex& real = table.real_indexes[logical.real];
    Index index{.name = logical.name};
    index.primary = logical.kind == IndexKind::Primary;
    index.unique = index.primary || real.IsUnique();
    index.required = index.primary || real.IsRequired();
    index.ignore_nulls = real.IgnoresNulls();
    index.foreign = logical.kind == IndexKind::Foreign;
    index.distinct_count = real.distinct_keys;
    for (const IndexColumn& column : real.columns) {
      const ColumnDefinition* const one = table.ColumnOf(column.column);
      if (one != nullptr) index.fields.push_back({one->name, !column.ascending});
    }
    indexes.push_back(std::move(index));
  }
  return indexes;
}

Result<NewColumn> ColumnFor(const Field& field) {
  if (!IsDataType(field.type)) return JetError(kInvalidFieldType);
  NewColumn column{.name = field.name, .type = ToColumnType(field.type)};
  column.size = field.size;
  column.precision = field.precision;
  column.scale = field.scale;
  column.auto_number = field.IsAutoNumber();
  column.required = field.required;
  column.allow_zero_length = field.allow_zero_length;
  column.compressed = field.compressed;
  column.hyperlink = (field.attributes & kHyperlinkField) != 0;
  const bool sized = field.type == DataType::ShortText || field.type == DataType::Binary;
  column.fixed = sized && (field.attributes & kFixedField) != 0;
  column.ordinal = field.ordinal_position;
  column.properties = field.properties;
  Status added = AddText(column.properties, kDefaultValue, ColumnType::Memo, field.default_value);
  if (added.ok()) {
    added = AddText(column.properties, kValidationRule, ColumnType::Memo, field.validation_rule);
  }
  if (added.ok()) {
    added = AddText(column.properties, kValidationText, ColumnType::Text, field.validation_text);
  }
  if (!added.ok()) return added.error();
  return column;
}

NewIndex IndexFor(const Index& index) {
  NewIndex made{.name = index.name};
  for (const IndexField& field : index.fields) {
    made.columns.push_back({.name = field.name, .descending = field.descending});
  }
  made.unique = index.unique;
  made.primary = index.primary;
  made.required = index.required;
  made.ignore_nulls = index.ignore_nulls;
  return made;
}

Relation RelationOf(const Relationship& relationship) {
  Relation relation{.name = relationship.name,
                    .table = relationship.referenced_table,
                    .foreign_table = relationship.table,
                    .attributes = relationship.flags};
  for (const auto& [referring, referenced] : relationship.columns) {
    relation.fields.push_back({.name = referenced, .foreign_name = referring});
  }
  return relation;
}

Relationship RelationshipFor(const Relation& relation) {
  Relationship relationship{
      .name = relation.name, .table = relation.foreign_table, .referenced_table = relation.table};
  relationship.flags = relation.attributes;
  for (const RelationField& field : relation.fields) {
    relationship.columns.emplace_back(field.foreign_name, field.name);
  }
  return relationship;
}

}  // namespace zent::jet
