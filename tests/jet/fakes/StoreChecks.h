#pragma once

#include <compare>
#include <set>
#include <string>
#include <vector>

#include "jet/fakes/StoreFile.h"
#include "jet/store/IndexTree.h"
#include "jet/store/RowPages.h"

/// What must hold for a database after every change; what does not is a failed expectation.
namespace zent::jet::testing {

/// The pages of the owner's maps are in order and its own, the free space of each is exact, those
/// with room are among them, and none is empty. Returns the owned pages.
std::vector<PageNumber> ExpectRightRowPages(StoreFile& file, const RowPages::Owner& owner);

/// Each used page of the file is in `named` or a bitmap page, and all of `named` are used.
void ExpectAllPagesNamed(StoreFile& file, const std::set<PageNumber>& named);

struct Entry {
  std::string key;
  RowPointer row;
  auto operator<=>(const Entry&) const = default;
};

/// The tree has exactly `entries`, forward, backward and by its nodes; levels, copies of last
/// entries, links and the map are right. Returns its pages.
std::vector<PageNumber> ExpectRightTree(StoreFile& file, const IndexTree& tree,
                                        const std::set<Entry>& entries);

/// `count` bytes that tell `seed`.
std::string SampleBytes(std::size_t count, unsigned seed);

}  // namespace zent::jet::testing
