#pragma once

#include <string>
#include <string_view>

namespace zent::testing {

/// The bytes of a file in the form in which two systems are compared. A settings file is its
/// sections, keys and values: Wine rewrites a whole file on a write and drops what stands between
/// them. A shell link is what it says: each writer lays it out in its own way. Any other file is
/// its bytes. `name` tells which kind it is.
std::string Comparable(std::string_view name, std::string_view bytes);

}  // namespace zent::testing
