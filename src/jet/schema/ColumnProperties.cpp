#include "jet/schema/ColumnProperties.h"

namespace zent::jet {
namespace {

Status Add(std::string_view name, ColumnType type, const Value& value, PropertySet& set) {
  Result<Property> property = MakeProperty(name, type, true, value);
  if (!property.ok()) return property.error();
  set.Set(std::move(property.value()));
  return {};
}

}  // namespace

Status AddColumnProperties(const NewColumn& column, PropertyBlob& blob) {
  PropertySet set{.owner = column.name, .kind = kColumnProperties};
  if (column.required) {
    if (Status s = Add("Required", ColumnType::Bool, true, set); !s.ok()) return s;
  }
  if (IsText(column.type) && column.allow_zero_length) {
    if (Status s = Add("AllowZeroLength", ColumnType::Bool, true, set); !s.ok()) return s;
  }
  if (column.type == ColumnType::Guid && column.auto_number) {
    const Value made = Text("GenGUID()");
    if (Status s = Add("DefaultValue", ColumnType::Memo, made, set); !s.ok()) return s;
  }
  for (const Property& property : column.properties) set.Set(property);
  if (!set.properties.empty()) blob.sets.push_back(std::move(set));
  return {};
}

}  // namespace zent::jet
