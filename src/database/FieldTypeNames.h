#pragma once

#include <string_view>

#include "database/port/FieldType.h"

/// The names that update documents have for types of fields.
namespace zent {

/// The type of that name, in any case; Unknown for a name that is none.
FieldType FieldTypeFromName(std::string_view name);

/// The name of a type number; empty for numbers without one. "Date" names two: engines of servers
/// number a date with a time 23.
std::string_view FieldTypeName(int type);

}  // namespace zent
