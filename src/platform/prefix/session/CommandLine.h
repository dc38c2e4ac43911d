#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zent {

/// The arguments of a Windows command line (without the program), as the C runtime of a Windows
/// program splits them: blanks and tabs outside of quotes separate, 2n backslashes before a quote
/// stand for n of them and the quote groups, 2n+1 for n of them and a quote of the text, two quotes
/// within a group for one of the text; all other backslashes are text. A group left open ends with
/// the line. "" is an empty argument.
std::vector<std::string> SplitArguments(std::string_view line);

}  // namespace zent
