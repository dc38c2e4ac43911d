#include "jet/dao/Field.h"

#include <algorithm>
#include <utility>

#include "base/CaseFold.h"

namespace zent::jet {

const Property* Field::FindProperty(std::string_view property) const {
  const auto at = std::find_if(properties.begin(), properties.end(),
                               [&](const Property& one) { return SameName(one.name, property); });
  return at == properties.end() ? nullptr : &*at;
}

Field CreateField(std::string name, DataType type, std::uint16_t size) {
  Field field;
  field.name = std::move(name);
  field.type = type;
  field.size = size;
  const bool has_size = type == DataType::ShortText || type == DataType::Binary;
  if (has_size && size == 0) field.size = static_cast<std::uint16_t>(kMaxTextUnits);
  return field;
}

Index CreateIndex(std::string name, const std::vector<std::string>& fields) {
  Index index{.name = std::move(name)};
  for (const std::string& field : fields) {
    const bool has_sign = !field.empty() && (field.front() == '-' || field.front() == '+');
    index.fields.push_back(
        {.name = has_sign ? field.substr(1) : field, .descending = field.starts_with('-')});
  }
  return index;
}

}  // namespace zent::jet
