#include "ui/console/LineBuffer.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace zent {
namespace {

constexpr std::size_t kLongestLine = std::size_t{64} << 10U;

}  // namespace

void LineBuffer::Append(std::string_view read) {
  // Of a line that is too long only its end matters.
  if (too_long_) read.remove_prefix(std::min(read.find('\n'), read.size()));
  pending_.append(read);
}

std::optional<std::string> LineBuffer::Take() {
  const std::size_t end = pending_.find('\n');
  if (end == std::string::npos) {
    if (pending_.size() > kLongestLine) {
      pending_.resize(kLongestLine);
      too_long_ = true;
    }
    return std::nullopt;
  }
  std::string line = pending_.substr(0, std::min(end, kLongestLine));
  pending_.erase(0, end + 1);
  too_long_ = false;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

std::optional<std::string> LineBuffer::TakeRest() {
  too_long_ = false;
  if (pending_.empty()) return std::nullopt;
  return std::exchange(pending_, {});
}

}  // namespace zent
