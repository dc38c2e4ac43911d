#include "jet/sql/execution/KeyRange.h"

#include <algorithm>
#include <utility>

namespace zent::jet {
namespace {

/// True when a range that ends in `a` ends before one that ends in `b`. An end stands for all keys
/// that begin with it: the shorter of two that begin alike lies behind.
bool EndsBefore(std::string_view a, std::string_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  const int order = a.substr(0, common).compare(b.substr(0, common));
  return order != 0 ? order < 0 : a.size() > b.size();
}

}  // namespace

bool IsBehind(std::string_view key, std::string_view high) {
  return key.substr(0, high.size()) > high;
}

std::vector<KeyRange> Intersection(const std::vector<KeyRange>& a, const std::vector<KeyRange>& b) {
  std::vector<KeyRange> both;
  for (std::size_t i = 0, k = 0; i < a.size() && k < b.size();) {
    const std::string& low = std::max(a[i].low, b[k].low);
    const bool a_first = EndsBefore(a[i].high, b[k].high);
    const std::string& high = a_first ? a[i].high : b[k].high;
    if (!IsBehind(low, high)) both.push_back({low, high});
    ++(a_first ? i : k);
  }
  return both;
}

void Tidy(std::vector<KeyRange>& ranges) {
  std::erase_if(ranges, [](const KeyRange& range) { return IsBehind(range.low, range.high); });
  std::sort(ranges.begin(), ranges.end(),
            [](const KeyRange& a, const KeyRange& b) { return a.low < b.low; });
  std::size_t kept = 0;
  for (std::size_t i = 1; i < ranges.size(); ++i) {
    if (IsBehind(ranges[i].low, ranges[kept].high)) {
      if (++kept != i) ranges[kept] = std::move(ranges[i]);
    } else if (EndsBefore(ranges[kept].high, ranges[i].high)) {
      ranges[kept].high = std::move(ranges[i].high);
    }
  }
  if (!ranges.empty()) ranges.resize(kept + 1);
}

}  // namespace zent::jet
