#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "base/Status.h"

namespace zent::xml {

/// Longest expression that is evaluated. Nesting, and with it the depth of the evaluator's
/// recursion, cannot exceed the length.
inline constexpr std::size_t kLongestXPath = 4096;

/// The error that tells why `xpath`, of which the beginning is shown, cannot be used.
RuntimeError Unusable(std::string_view xpath, const std::string& reason,
                      int number = kInvalidProcedureCall);

/// The first namespace prefix other than "xml" that an XPath expression uses, or nothing.
std::optional<std::string> FirstPrefix(std::string_view xpath);

}  // namespace zent::xml
