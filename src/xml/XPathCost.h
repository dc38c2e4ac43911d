#pragma once

#include <cstddef>
#include <string_view>

namespace zent::xml {

/// True for an expression whose evaluation may take as long as the square of the size of the
/// document, or longer. The library looks for each node that it comes to among all others that it
/// has found, when a step can lead to the same node twice: on other axes than child, attribute and
/// self, with "..", with "//" within a path, and where "|" joins two. As long takes what compares
/// two paths, and what is looked up in all of the document for each of its nodes.
bool IsSteep(std::string_view xpath);

/// Position of the first "//" that stands within a path and outside of brackets; npos without one.
std::size_t FindInnerDescent(std::string_view xpath);

}  // namespace zent::xml
