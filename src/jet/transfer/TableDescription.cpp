#include "jet/transfer/TableDescription.h"

#include "base/CaseFold.h"
#include "jet/format/JetErrors.h"
#include "jet/format/PropertyBlob.h"

namespace zent::jet {
namespace {

/// A property as a file of Jet 4 has it. All but texts have the same bytes in both versions, also
/// those whose bytes do not fit their type.
Result<Property> Converted(JetVersion version, const Property& property) {
  if (version == JetVersion::Jet4 || !IsText(property.type)) return property;
  const Value value = PropertyValue(version, property);
  if (IsNull(value)) return JetError(kDataTypeConversion);
  return MakeProperty(property.name, property.type, property.IsDdl(), value);
}

/// Names and numbers by which Access tracks one very table must not be those of two.
bool IsOfOneTableOnly(const Property& property) {
  return SameName(property.name, "GUID") || SameName(property.name, "NameMap");
}

Result<std::vector<Property>> PropertiesOf(const Table& table, std::string_view column) {
  std::vector<Property> properties;
  const PropertySet* const set = table.properties().Find(column);
  if (set == nullptr) return properties;
  for (const Property& property : set->properties) {
    if (IsOfOneTableOnly(property)) continue;
    Result<Property> one = Converted(table.definition().version, property);
    if (!one.ok()) return one.error();
    properties.push_back(std::move(one.value()));
  }
  return properties;
}

/// Takes a Yes/No property out of the list; `otherwise` without one.
bool TakeFlag(std::vector<Property>& properties, std::string_view name, bool otherwise) {
  for (auto at = properties.begin(); at != properties.end(); ++at) {
    if (!SameName(at->name, name)) continue;
    const Value value = PropertyValue(JetVersion::Jet4, *at);
    properties.erase(at);
    const bool* const set = std::get_if<bool>(&value);
    return set == nullptr ? otherwise : *set;
  }
  return otherwise;
}

std::uint16_t SizeOf(const ColumnDefinition& column, JetVersion version) {
  const bool wide = column.type == ColumnType::Text && version == JetVersion::Jet4;
  return static_cast<std::uint16_t>(wide ? column.length / 2 : column.length);
}

const ColumnDefinition& ColumnOf(const TableDefinition& table, std::uint16_t number) {
  return *table.ColumnOf(number);
}

NewIndex DescribeIndex(const TableDefinition& table, const LogicalIndex& logical) {
  const RealIndex& real = table.real_indexes[logical.real];
  NewIndex index{.name = logical.name};
  index.primary = logical.kind == IndexKind::Primary;
  index.unique = index.primary || real.IsUnique();
  index.required = index.primary || real.IsRequired();
  index.ignore_nulls = real.IgnoresNulls();
  for (const IndexColumn& column : real.columns) {
    index.columns.push_back(
        {.name = ColumnOf(table, column.column).name, .descending = !column.ascending});
  }
  return index;
}

}  // namespace

Result<NewColumn> DescribeColumn(const Table& table, std::size_t position) {
  const TableDefinition& definition = table.definition();
  const ColumnDefinition& column = definition.columns[position];
  const bool jet4 = definition.version == JetVersion::Jet4;
  NewColumn described{.name = column.name, .type = column.type};
  described.size = SizeOf(column, definition.version);
  described.precision = column.precision();
  described.scale = column.scale();
  described.auto_number = column.IsAutoNumber() || (column.type == ColumnType::Guid &&
                                                    (column.flags & kGuidAutoNumberColumn) != 0);
  described.compressed = IsText(column.type) && (column.IsCompressed() || !jet4);
  described.hyperlink = column.IsHyperlink();
  described.fixed =
      column.IsFixed() && (column.type == ColumnType::Text || column.type == ColumnType::Binary);
  Result<std::vector<Property>> properties = PropertiesOf(table, column.name);
  if (!properties.ok()) return properties.error();
  described.properties = std::move(properties.value());
  described.required = TakeFlag(described.properties, "Required", false);
  described.allow_zero_length = TakeFlag(described.properties, "AllowZeroLength", false);
  return described;
}

Result<NewTable> DescribeTable(const Table& table, std::string name) {
  const TableDefinition& definition = table.definition();
  NewTable described{.name = std::move(name)};
  for (const std::size_t position : table.display_order()) {
    Result<NewColumn> column = DescribeColumn(table, position);
    if (!column.ok()) return column.error();
    described.columns.push_back(std::move(column.value()));
  }
  for (const LogicalIndex& logical : definition.logical_indexes) {
    if (logical.kind == IndexKind::Foreign) continue;
    for (const IndexColumn& column : definition.real_indexes[logical.real].columns) {
      if (definition.ColumnOf(column.column) == nullptr) return JetError(kCannotOpenDatabase);
    }
    described.indexes.push_back(DescribeIndex(definition, logical));
  }
  Result<std::vector<Property>> properties = PropertiesOf(table, {});
  if (!properties.ok()) return properties.error();
  described.properties = std::move(properties.value());
  return described;
}

}  // namespace zent::jet
