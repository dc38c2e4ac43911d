#include "platform/SystemInfo.h"

namespace zent {

std::string ExpandEnvironment(SystemInfo& system, std::string_view text) {
  std::string expanded;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t open = text.find('%', at);
    if (open == std::string_view::npos) break;
    const std::size_t close = text.find('%', open + 1);
    if (close == std::string_view::npos) break;
    expanded.append(text, at, open - at);
    const std::optional<std::string> value =
        system.EnvironmentVariable(text.substr(open + 1, close - open - 1));
    if (value) {
      expanded.append(*value);
      at = close + 1;
    } else {
      // The closing sign may open the next name.
      expanded.append(text, open, close - open);
      at = close;
    }
  }
  expanded.append(text.substr(at));
  return expanded;
}

}  // namespace zent
