#pragma once

#include <cstdint>
#include <string_view>

#include "jet/format/Layout.h"

namespace zent::jet {

/// Stands for a set of index entries, whatever their order: equal sets have equal digests, and
/// others as good as never. It keeps the check of an index from holding its keys in memory.
class EntryDigest {
 public:
  void Add(std::string_view key, RowPointer row);
  std::uint64_t count() const { return count_; }
  bool operator==(const EntryDigest&) const = default;

 private:
  std::uint64_t count_ = 0;
  std::uint64_t sum_ = 0;
  std::uint64_t mixed_sum_ = 0;
};

}  // namespace zent::jet
