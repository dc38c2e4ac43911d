#include "database/engines/jet/JetDefinitions.h"

#include <algorithm>
#include <limits>

#include "base/CaseFold.h"
#include "base/Text.h"
#include "database/engines/jet/JetValues.h"
#include "jet/format/JetErrors.h"

namespace zent {
namespace {

constexpr auto kVersion = jet::JetVersion::Jet4;
constexpr std::string_view kRule = "ValidationRule";
constexpr std::string_view kRuleText = "ValidationText";

PropertyDefinition FromJet(const jet::Property& property) {
  return {.name = property.name,
          .type = static_cast<FieldType>(property.type),
          .value = zent::FromJet(jet::PropertyValue(kVersion, property))};
}

/// Nothing for a property that the engine does not take.
std::optional<jet::Property> ToJet(const PropertyDefinition& property) {
  const Result<jet::Value> value = zent::ToJet(property.value);
  if (!value.ok()) return std::nullopt;
  Result<jet::Property> made = jet::MakeProperty(
      property.name, static_cast<jet::ColumnType>(property.type), true, value.value());
  if (!made.ok()) return std::nullopt;
  return std::move(made.value());
}

/// A number beyond 16 bits becomes one that the engine refuses as too large, rather than a small
/// one.
std::uint16_t In16Bits(std::int32_t number) {
  constexpr std::int32_t kMost = std::numeric_limits<std::uint16_t>::max();
  return static_cast<std::uint16_t>(number < 0 ? kMost : std::min(number, kMost));
}

/// The rules as properties of the table or the field; the same ones for the same type, with empty
/// texts where there is no rule.
std::vector<PropertyDefinition> RulesOf(const TableDefinition& table) {
  return {{std::string(kRule), FieldType::Memo, table.validation_rule},
          {std::string(kRuleText), FieldType::Text, table.validation_text}};
}

std::vector<PropertyDefinition> RulesOf(const FieldDefinition& field) {
  std::vector<PropertyDefinition> rules = {
      {"Required", FieldType::Boolean, field.required},
      {std::string(kRule), FieldType::Memo, field.validation_rule},
      {std::string(kRuleText), FieldType::Text, field.validation_text}};
  if (field.type == FieldType::Text || field.type == FieldType::Memo) {
    rules.push_back({"AllowZeroLength", FieldType::Boolean, field.allow_zero_length});
  }
  return rules;
}

/// Those of `wanted` that are not in `present`: each one that is set is written to the file.
std::vector<PropertyDefinition> Changed(std::vector<PropertyDefinition> wanted,
                                        const std::vector<PropertyDefinition>& present) {
  std::erase_if(wanted, [&](const PropertyDefinition& rule) {
    return std::find(present.begin(), present.end(), rule) != present.end();
  });
  return wanted;
}

std::vector<jet::Property> ToJet(const std::vector<PropertyDefinition>& properties) {
  std::vector<jet::Property> made;
  for (const PropertyDefinition& property : properties) {
    if (auto one = ToJet(property)) made.push_back(std::move(*one));
  }
  return made;
}

}  // namespace

FieldDefinition FromJet(const jet::Field& field) {
  FieldDefinition definition = {
      .name = field.name,
      .type = FromJet(field.type),
      .size = field.size,
      .attributes = field.attributes,
      .ordinal_position = field.ordinal_position,
      .required = field.required,
      .allow_zero_length = field.allow_zero_length,
      .default_value = field.default_value,
      .validation_rule = field.validation_rule,
      .validation_text = field.validation_text,
      .precision = field.precision,
      .scale = field.scale,
  };
  for (const jet::Property& property : field.properties) {
    definition.properties.push_back(FromJet(property));
  }
  return definition;
}

Result<jet::Field> ToJet(const FieldDefinition& field) {
  const Result<jet::DataType> type = ToJet(field.type);
  if (!type.ok()) return type.error();
  jet::Field made = jet::CreateField(field.name, type.value(), In16Bits(field.size));
  made.attributes |= field.attributes;
  made.required = field.required;
  made.allow_zero_length = field.allow_zero_length;
  made.default_value = field.default_value;
  made.validation_rule = field.validation_rule;
  made.validation_text = field.validation_text;
  made.ordinal_position = In16Bits(field.ordinal_position);
  if (field.type == FieldType::Decimal) {
    made.precision = field.precision;
    made.scale = field.scale;
  }
  made.properties = ToJet(field.properties);
  return made;
}

IndexDefinition FromJet(const jet::Index& index) {
  IndexDefinition definition = {.name = index.name,
                                .fields = {},
                                .primary = index.primary,
                                .unique = index.unique,
                                .required = index.required,
                                .ignore_nulls = index.ignore_nulls,
                                .foreign = index.foreign};
  for (const jet::IndexField& field : index.fields) {
    definition.fields.push_back({field.name, field.descending});
  }
  return definition;
}

jet::Index ToJet(const IndexDefinition& index) {
  jet::Index made = {.name = index.name,
                     .primary = index.primary,
                     .unique = index.unique,
                     .required = index.required,
                     .ignore_nulls = index.ignore_nulls};
  for (const IndexField& field : index.fields)
    made.fields.push_back({field.name, field.descending});
  return made;
}

RelationDefinition FromJet(const jet::Relation& relation) {
  RelationDefinition definition = {.name = relation.name,
                                   .table = relation.table,
                                   .foreign_table = relation.foreign_table,
                                   .fields = {},
                                   .attributes = relation.attributes};
  for (const jet::RelationField& field : relation.fields) {
    definition.fields.push_back({field.name, field.foreign_name});
  }
  return definition;
}

jet::Relation ToJet(const RelationDefinition& relation) {
  jet::Relation made = {.name = relation.name,
                        .table = relation.table,
                        .foreign_table = relation.foreign_table,
                        .attributes = relation.attributes};
  for (const RelationField& field : relation.fields) {
    made.fields.push_back({field.name, field.foreign_name});
  }
  return made;
}

Result<TableDefinition> FromJet(const jet::TableDef& table) {
  TableDefinition definition = {.name = table.name(),
                                .attributes = table.attributes(),
                                .connect = table.connect(),
                                .source_table = table.source_table_name()};
  const auto fields = table.Fields();
  if (!fields.ok()) return fields.error();
  for (const jet::Field& field : fields.value()) definition.fields.push_back(FromJet(field));
  if (table.IsLinked()) return definition;
  const auto indexes = table.Indexes();
  if (!indexes.ok()) return indexes.error();
  for (const jet::Index& index : indexes.value()) definition.indexes.push_back(FromJet(index));
  const auto properties = table.Properties();
  if (!properties.ok()) return properties.error();
  for (const jet::Property& property : properties.value()) {
    PropertyDefinition one = FromJet(property);
    if (EqualsIgnoringCase(one.name, kRule)) {
      definition.validation_rule = one.value.AsText();
    } else if (EqualsIgnoringCase(one.name, kRuleText)) {
      definition.validation_text = one.value.AsText();
    } else {
      definition.properties.push_back(std::move(one));
    }
  }
  return definition;
}

Result<jet::TableDef> ToJet(const TableDefinition& table) {
  jet::TableDef made(table.name);
  made.SetHidden((table.attributes & kTableHidden) != 0);
  for (const FieldDefinition& field : table.fields) {
    const Result<jet::Field> one = ToJet(field);
    if (!one.ok()) return one.error();
    if (Status added = made.Append(one.value()); !added.ok()) return added.error();
  }
  for (const IndexDefinition& index : table.indexes) {
    if (index.foreign) continue;
    if (Status added = made.Append(ToJet(index)); !added.ok()) return added.error();
  }
  std::vector<PropertyDefinition> properties = table.properties;
  if (!table.validation_rule.empty()) {
    const std::vector<PropertyDefinition> rules = RulesOf(table);
    properties.insert(properties.end(), rules.begin(), rules.end());
  }
  for (const jet::Property& property : ToJet(properties)) {
    if (Status set = made.SetProperty(property); !set.ok()) return set.error();
  }
  return made;
}

Status SetRules(jet::TableDef& table, const TableDefinition& definition) {
  const Result<TableDefinition> present = FromJet(table);
  if (!present.ok()) return present.error();
  for (const FieldDefinition& field : definition.fields) {
    const auto old = std::find_if(
        present.value().fields.begin(), present.value().fields.end(),
        [&](const FieldDefinition& candidate) { return SameName(candidate.name, field.name); });
    if (old == present.value().fields.end()) return jet::JetError(jet::kItemNotFound);
    for (const jet::Property& rule : ToJet(Changed(RulesOf(field), RulesOf(*old)))) {
      if (Status set = table.SetFieldProperty(field.name, rule); !set.ok()) return set;
    }
  }
  for (const jet::Property& rule : ToJet(Changed(RulesOf(definition), RulesOf(present.value())))) {
    if (Status set = table.SetProperty(rule); !set.ok()) return set;
  }
  return {};
}

}  // namespace zent
