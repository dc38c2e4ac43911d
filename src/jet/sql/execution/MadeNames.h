#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "base/Status.h"

/// Names for what a statement gives none.
namespace zent::jet {

class Catalog;

/// As much of `name` as a name may have, cut at a character.
std::string CutName(std::string_view name);

/// `wanted`, cut, with a number behind it when the name is taken.
std::string FreeName(std::string_view wanted,
                     const std::function<bool(const std::string& name)>& is_taken);

/// A name for a relationship whose referring side is `table`: it is that of an index there as well.
Result<std::string> FreeRelationshipName(Catalog& catalog, const std::string& table,
                                         std::string_view wanted);

}  // namespace zent::jet
