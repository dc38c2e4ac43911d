#pragma once

#include <initializer_list>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "database/port/Recordset.h"

namespace zent {

struct FieldChange {
  std::string_view field;
  FieldValue value;
};
using FieldChanges = std::vector<FieldChange>;

/// Adds a row with these fields, or changes the present one. Whole or not at all: a value that does
/// not fit gives the change up.
Status AddRow(Recordset& rows, const FieldChanges& changes);
Status ChangeRow(Recordset& rows, const FieldChanges& changes);

/// A field of the present row as text; null is empty.
Result<std::string> FieldText(Recordset& rows, std::string_view field);

}  // namespace zent
