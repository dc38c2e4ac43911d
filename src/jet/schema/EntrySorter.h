#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/Layout.h"

namespace zent::jet {

/// Puts the entries of an index in order within a bounded memory. It keeps the smallest ones that
/// fit; what it had to leave out comes in the next pass over the same entries:
///   do { for (each entry) sorter.Add(...); sorter.Sort(); for (i < count()) ... } while
///   (sorter.NextPass());
class EntrySorter {
 public:
  explicit EntrySorter(std::size_t budget_bytes) : budget_(budget_bytes) {}

  void Add(std::string_view key, RowPointer row);
  /// Call before the entries of a pass are read.
  void Sort();
  std::size_t count() const { return places_.size(); }
  std::string_view key(std::size_t i) const { return KeyOf(places_[i]); }
  RowPointer row(std::size_t i) const { return places_[i].row; }
  /// False when nothing was left out; else begins the next pass.
  bool NextPass();

 private:
  struct Place {
    std::size_t offset;
    std::size_t length;
    RowPointer row;
  };
  struct Entry {
    std::string key;
    RowPointer row;
  };
  std::string_view KeyOf(const Place& place) const {
    return std::string_view(keys_).substr(place.offset, place.length);
  }
  bool Less(const Place& a, const Place& b) const;
  void DropUpperHalf();

  std::size_t budget_;
  std::string keys_;  ///< all keys, one behind the other
  std::vector<Place> places_;
  std::optional<Entry> lower_;  ///< the last entry of the pass before
  std::optional<Entry> upper_;  ///< the largest that is kept; set once one was left out
};

}  // namespace zent::jet
