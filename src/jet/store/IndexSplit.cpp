#include "jet/store/IndexSplit.h"

#include <algorithm>

namespace zent::jet {
namespace {

/// Sizes of runs of entries, packed.
class RunSizes {
 public:
  explicit RunSizes(const IndexPage& page) : page_(page), sums_{0} {
    const std::size_t pointer = page.leaf ? 4 : 8;
    for (const IndexEntry& entry : page.entries) {
      sums_.push_back(sums_.back() + entry.key.size() + pointer);
    }
  }

  /// Of the entries from `first` up to `end`.
  std::size_t Of(std::size_t first, std::size_t end) const {
    if (first >= end) return 0;
    const std::string& a = page_.entries[first].key;
    const std::string& b = page_.entries[end - 1].key;
    const auto shared = static_cast<std::size_t>(
        std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
    return sums_[end] - sums_[first] - (end - first - 1) * shared;
  }

 private:
  const IndexPage& page_;
  std::vector<std::size_t> sums_;
};

}  // namespace

std::optional<std::size_t> ChooseSplit(JetVersion version, const IndexPage& page, bool leave_full) {
  const std::size_t room = IndexPageRoom(version);
  const std::size_t total = page.entries.size();
  const std::size_t promoted = page.leaf ? 0 : 1;  // it leaves the page for the node above
  const std::size_t fewest = 1 + promoted;
  if (total < fewest + 1) return std::nullopt;
  const std::size_t most = total - 1;
  const RunSizes sizes(page);
  const auto left = [&](std::size_t count) { return sizes.Of(0, count - promoted); };
  const auto right = [&](std::size_t count) { return sizes.Of(count, total); };

  if (leave_full && left(most) <= room) return most;
  std::size_t low = fewest;
  for (std::size_t high = most; low < high;) {
    const std::size_t middle = (low + high) / 2;
    if (left(middle) < right(middle)) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  if (low > fewest && right(low - 1) < left(low)) --low;
  while (low > fewest && left(low) > room) --low;
  if (left(low) > room) return std::nullopt;
  return low;
}

}  // namespace zent::jet
