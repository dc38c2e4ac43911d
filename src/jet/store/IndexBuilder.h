#pragma once

#include <string>
#include <vector>

#include "base/Status.h"
#include "jet/format/IndexPage.h"
#include "jet/store/IndexTree.h"

namespace zent::jet {

/// Fills an empty tree from left to right with full pages: for an index on a filled table, and for
/// compaction. Entries come in ascending order.
class IndexBuilder {
 public:
  /// `tree` must be empty and outlive it.
  explicit IndexBuilder(IndexTree& tree);

  /// kRecordTooLarge for a key beyond kMaxIndexKey; kInvalidArgument when the entry is not above
  /// the one before.
  Status Add(std::string_view key, RowPointer row);
  /// Writes what is still in memory. Nothing may be added afterwards.
  Status Finish();

 private:
  /// The page of a level that is being filled.
  struct Level {
    IndexPage content = {};
    PageNumber page = 0;    ///< 0: it may still become the root
    std::size_t bytes = 0;  ///< of the entries, unpacked
  };

  /// An entry in the memory of one that was written.
  IndexEntry NewEntry(std::string_view key, RowPointer row);
  Status AddTo(std::size_t depth, IndexEntry entry);
  Status Flush(std::size_t depth, PageNumber next_child);
  bool HasRoom(const Level& level, const IndexEntry& entry) const;
  Status Write(const Level& level, PageNumber page);
  Result<PageNumber> NewPage();

  IndexTree& tree_;
  std::size_t room_;
  std::vector<Level> levels_;      ///< from the leaves up
  std::vector<IndexEntry> spent_;  ///< entries that were written
};

}  // namespace zent::jet
