#pragma once

#include <cstdint>

#include "database/port/FieldType.h"
#include "odbc/OdbcColumn.h"

namespace zent {

/// The type that holds every value of a column. A type that the port does not know is Text.
FieldType FieldTypeOf(const odbc::SqlType& type);

/// As in FieldDefinition: characters of text, bytes otherwise, 0 for memos.
std::int32_t FieldSizeOf(const odbc::SqlType& type);

}  // namespace zent
