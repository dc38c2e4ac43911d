#pragma once

#include <string_view>

#include "base/Status.h"

namespace zent::jet {

/// kInvalidName unless `name` can be that of a table, column, index or relationship: 1 to 64
/// characters, none of . ! ` [ ] or a control character, no leading blank.
Status CheckName(std::string_view name);

}  // namespace zent::jet
