#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zent::xml {

/// One condition on an element: that it has the attribute, or a child element, called `name`, and
/// where a `value` is given that one of them has this text.
struct PlainTest {
  bool attribute = false;
  std::string name;
  std::optional<std::string> value;
};

/// What stands between square brackets.
struct PlainPredicate {
  enum class Kind { Tests, Position, Last };
  Kind kind = Kind::Tests;
  std::vector<PlainTest> tests;  ///< all of them hold
  std::size_t position = 0;      ///< from 1
};

struct PlainStep {
  bool attribute = false;  ///< an attribute of the node, else an element in it; the last step only
  std::string name;        ///< empty: any
  std::vector<PlainPredicate> predicates;
};

/// An expression of the form that most update descriptions use: /a/b[@id='x'][2]/@c and the like.
struct PlainPath {
  bool absolute = false;
  std::vector<PlainStep> steps;  ///< at least one
};

/// `xpath` as a plain path: child elements by name or *, in brackets a position, last(), or tests
/// @name, Name, @name='text' and Name='text' joined by "and", at the end perhaps an attribute.
/// Nothing for every other expression, valid or not, and for one with very many tests, so that a
/// walk along a plain path looks at no node more than a few times.
std::optional<PlainPath> ParsePlainPath(std::string_view xpath);

}  // namespace zent::xml
