#pragma once

#include <optional>
#include <string_view>

namespace zent::xml {

/// True for an expression whose evaluation may take as long as the square of the size of the
/// document, or longer. The library looks for each node that it comes to among all others that it
/// has found, when a step can lead to the same node twice: on other axes than child, attribute and
/// self, with ".." and "//" within a path, and where "|" joins two. As long takes what compares
/// two paths, and what is looked up in all of the document for each of its nodes.
bool IsSteep(std::string_view xpath);

/// Where a path goes on in a way that is steep only when it goes on from many nodes.
struct SteepStep {
  std::string_view before;
  std::string_view rest;  ///< what follows: of a descent with its "//", of a parent without "/.."
  bool to_parent = false;
};

/// The first step of that kind outside of brackets; nothing without one.
std::optional<SteepStep> FindSteepStep(std::string_view xpath);

}  // namespace zent::xml
