#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zent::jet {

/// The keys from `low` on to the last that begins with `high` or lies before it.
struct KeyRange {
  std::string low;
  std::string high;
  bool operator==(const KeyRange&) const = default;
};

/// True when `key` lies behind all keys of a range that ends in `high`.
bool IsBehind(std::string_view key, std::string_view high);

/// The keys that lie in a range of both. Both are in order and do not touch; so is the result.
std::vector<KeyRange> Intersection(const std::vector<KeyRange>& a, const std::vector<KeyRange>& b);

/// Puts ranges in order and joins those that touch.
void Tidy(std::vector<KeyRange>& ranges);

}  // namespace zent::jet
