#pragma once

#include <set>
#include <vector>

#include "jet/fakes/StoreFile.h"
#include "jet/store/RowPages.h"

/// What must hold for a database after every change; what does not is a failed expectation.
namespace zent::jet::testing {

/// The pages of the owner's maps are in order and its own, the free space of each is exact, those
/// with room are among them, and none is empty. Returns the owned pages.
std::vector<PageNumber> ExpectRightRowPages(StoreFile& file, const RowPages::Owner& owner);

/// Each used page of the file is in `named` or a bitmap page, and all of `named` are used.
void ExpectAllPagesNamed(StoreFile& file, const std::set<PageNumber>& named);

/// `count` bytes that tell `seed`.
std::string SampleBytes(std::size_t count, unsigned seed);

}  // namespace zent::jet::testing
