#pragma once

#include <string_view>

#include "jet/format/Value.h"

/// The names of types in data definitions.
namespace zent::jet {

struct ColumnTypeName {
  std::string_view name;
  ColumnType type = ColumnType::Long;
  bool auto_number = false;
};

/// What `name` (any case) stands for; null for a word that is no type.
const ColumnTypeName* FindColumnType(std::string_view name);

/// The name by which a type is printed: the first of its synonyms.
std::string_view ColumnTypeNameOf(ColumnType type, bool auto_number);

inline constexpr int kMaxTextSize = 255;    // characters
inline constexpr int kMaxBinarySize = 510;  // bytes
inline constexpr int kMaxPrecision = 28;
inline constexpr int kDefaultPrecision = 18;

}  // namespace zent::jet
