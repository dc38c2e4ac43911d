#include "jet/schema/EntrySorter.h"

#include <algorithm>

#include "jet/format/IndexPage.h"

namespace zent::jet {

void EntrySorter::Add(std::string_view key, RowPointer row) {
  if (lower_ && CompareEntries(key, row, lower_->key, lower_->row) <= 0) return;
  if (upper_ && CompareEntries(key, row, upper_->key, upper_->row) > 0) return;
  places_.push_back({.offset = keys_.size(), .length = key.size(), .row = row});
  keys_ += key;
  if (keys_.size() + places_.size() * sizeof(Place) > budget_ && places_.size() > 1) {
    DropUpperHalf();
  }
}

bool EntrySorter::Less(const Place& a, const Place& b) const {
  return CompareEntries(KeyOf(a), a.row, KeyOf(b), b.row) < 0;
}

void EntrySorter::Sort() {
  std::sort(places_.begin(), places_.end(),
            [this](const Place& a, const Place& b) { return Less(a, b); });
}

void EntrySorter::DropUpperHalf() {
  const auto last = places_.begin() + static_cast<std::ptrdiff_t>((places_.size() - 1) / 2);
  std::nth_element(places_.begin(), last, places_.end(),
                   [this](const Place& a, const Place& b) { return Less(a, b); });
  upper_ = Entry{.key = std::string(KeyOf(*last)), .row = last->row};
  places_.erase(last + 1, places_.end());
  std::string kept;
  for (Place& place : places_) {
    const std::size_t offset = kept.size();
    kept += KeyOf(place);
    place.offset = offset;
  }
  keys_ = std::move(kept);
}

bool EntrySorter::NextPass() {
  if (!upper_) return false;
  lower_ = std::move(upper_);
  upper_.reset();
  keys_.clear();
  places_.clear();
  return true;
}

}  // namespace zent::jet
