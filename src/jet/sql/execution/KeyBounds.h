#pragma once

#include <optional>
#include <string_view>

#include "jet/format/TableDefinition.h"
#include "jet/format/Value.h"

/// What the values of an index can be that compare with a value in a certain way.
namespace zent::jet {

/// The nearest values of a column around some value.
struct KeyBounds {
  Value low;   ///< not above it
  Value high;  ///< not below it; equals `low` where the column can hold the value
};

/// Nothing where an index must not be asked: values that compare in another way than keys do, and
/// those beyond what the column holds. `value` is not null.
std::optional<KeyBounds> BoundsOf(const ColumnDefinition& column, const Value& value);

/// What texts that match the pattern of a LIKE begin with, as far as their keys surely begin with
/// its key: letters and digits of ASCII, and blanks between them.
std::string_view SafePrefix(std::string_view prefix);

}  // namespace zent::jet
