#include "database/FieldTypeNames.h"

#include <array>

#include "base/Text.h"

namespace zent {
namespace {

struct NamedType {
  int number;
  std::string_view name;
};

/// From the lowest number on: the first entry of a name is the one that it stands for.
constexpr std::array kNamedTypes = {
    NamedType{1, "Yes/No"}, NamedType{3, "Integer"}, NamedType{4, "Long"}, NamedType{5, "Currency"},
    NamedType{6, "Single"}, NamedType{7, "Double"},  NamedType{8, "Date"}, NamedType{10, "Text"},
    NamedType{12, "Memo"},  NamedType{23, "Date"},
};

}  // namespace

FieldType FieldTypeFromName(std::string_view name) {
  for (const NamedType& type : kNamedTypes) {
    if (EqualsIgnoringCase(type.name, name)) return static_cast<FieldType>(type.number);
  }
  return FieldType::Unknown;
}

std::string_view FieldTypeName(int type) {
  for (const NamedType& named : kNamedTypes) {
    if (named.number == type) return named.name;
  }
  return {};
}

}  // namespace zent
