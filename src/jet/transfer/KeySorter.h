#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/store/IndexTree.h"
#include "jet/transfer/KeyEntry.h"

namespace zent::jet {

/// Gathers the entries of an index in any order and builds its tree, which must be empty. Memory is
/// bounded: entries beyond the bound are sorted in parts; the first part is built at once with full
/// pages, the later ones are put in between, in order.
class KeySorter {
 public:
  /// `tree` must outlive it. `unique`: two entries of one key are kDuplicateKey unless their key is
  /// `null_key`, that of a row whose columns are all null.
  KeySorter(IndexTree& tree, bool unique, std::string null_key, std::size_t bytes)
      : tree_(tree),
        unique_(unique),
        null_key_(std::move(null_key)),
        limit_(std::min(bytes, kMostBytes)) {}

  Status Add(std::string_view key, RowPointer row);
  /// As above in two steps, without a copy: the key is appended to `keys`, then AddKey or DropKey
  /// says what becomes of it.
  std::string& keys() { return keys_; }
  Status AddKey(RowPointer row);
  void DropKey() { keys_.resize(begin_); }
  /// Completes the tree. Nothing may be added afterwards.
  Status Finish();
  /// Different keys, once finished.
  std::uint32_t distinct_keys() const { return distinct_; }

 private:
  static constexpr std::size_t kMostBytes = std::size_t{1} << 30U;  ///< keys are found by 32 bits

  std::string_view KeyOf(const KeyEntry& entry) const {
    return std::string_view(keys_).substr(entry.at, entry.length);
  }
  void SetHeads();
  void Sort();
  bool Before(const KeyEntry& a, const KeyEntry& b) const;
  Status Flush();
  Status Build();
  Status Insert();
  Status CheckUnique(std::string_view key, bool known) const;

  IndexTree& tree_;
  bool unique_;
  std::string null_key_;
  std::size_t limit_;
  std::string keys_;
  std::vector<KeyEntry> entries_;
  std::size_t begin_ = 0;  ///< of the next key
  bool built_ = false;
  std::uint32_t distinct_ = 0;
};

}  // namespace zent::jet
