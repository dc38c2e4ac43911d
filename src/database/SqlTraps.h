#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zent {

/// What the translation of `statement` (TranslateStatement, for a server) is known to get wrong or
/// to leave, one line each in the order of its steps; empty when nothing is known against it.
std::vector<std::string> FindSqlTraps(std::string_view statement, bool is_oracle);

}  // namespace zent
