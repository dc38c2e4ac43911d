#pragma once

#include <optional>
#include <string_view>

#include "base/Status.h"
#include "jet/format/Value.h"

namespace zent::jet {

/// Below, equal or above 0 as `a` is below, equal to or above `b`; nothing where one is null.
/// Numbers of all types compare by what they are worth, texts by the collation (so that a scan and
/// an index agree), GUIDs with GUIDs and their texts. kCriteriaTypeMismatch for any other pair, so
/// for a number and a text.
Result<std::optional<int>> CompareValues(const Value& a, const Value& b);

/// The order of two texts of any length in the collation.
int CompareText(std::string_view a, std::string_view b);

}  // namespace zent::jet
