#pragma once

#include <string>
#include <string_view>

namespace zent {

/// `text` as one argument of a Windows command line, whatever it holds: in quotes, with a backslash
/// before each quote of its own and each backslash that stands before a quote doubled.
std::string QuoteArgument(std::string_view text);

}  // namespace zent
