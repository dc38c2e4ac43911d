#pragma once

#include <string_view>
#include <vector>

#include "base/Status.h"
#include "xml/Node.h"

namespace zent::xml {

// What the library's evaluator selects from `from`, a node; errors as in Node. `xpath` is UTF-8 of
// no more than kLongestXPath bytes, without NUL.

Result<Node> LibrarySelectFirst(std::string_view xpath, Node from);
Result<std::vector<Node>> LibrarySelectAll(std::string_view xpath, Node from);

}  // namespace zent::xml
