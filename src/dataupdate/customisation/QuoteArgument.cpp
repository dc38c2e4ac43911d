#include "dataupdate/customisation/QuoteArgument.h"

#include <cstddef>

namespace zent {

std::string QuoteArgument(std::string_view text) {
  std::string quoted = "\"";
  std::size_t backslashes = 0;  // just before the present character
  for (const char c : text) {
    if (c == '"') quoted.append(backslashes + 1, '\\');
    quoted += c;
    backslashes = c == '\\' ? backslashes + 1 : 0;
  }
  quoted.append(backslashes, '\\');
  quoted += '"';
  return quoted;
}

}  // namespace zent
