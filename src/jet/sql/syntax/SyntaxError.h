#pragma once

#include <string_view>

#include "base/RuntimeError.h"

/// Errors of statements, with the place where reading them stopped.
namespace zent::jet {

/// kSyntaxError at byte `at` of `statement`. The text quotes what stands there (at most 40
/// characters; at the end: what stands before it) and ends in "(character 8: `reason`)", where the
/// first character is 1.
RuntimeError SyntaxError(std::string_view statement, std::size_t at, std::string_view reason);

}  // namespace zent::jet
