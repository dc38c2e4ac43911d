#pragma once

#include <string>
#include <string_view>

namespace zent {

/// `text` as it may go to a terminal: CR LF, LF and CR are one line feed each, tabs stay, every
/// other control is shown (ESC as "^[", DEL as "^?") instead of obeyed, because texts come from
/// packages. Controls of the upper range, halves of surrogate pairs and bytes that are no UTF-8
/// become U+FFFD.
std::string ForTerminal(std::string_view text);

}  // namespace zent
