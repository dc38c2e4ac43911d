#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/fakes/MemoryStorage.h"
#include "jet/storage/Pager.h"

namespace zent::jet::testing {

inline constexpr std::size_t kPage = 4096;
inline constexpr std::string_view kPath = "C:\\Data\\Korvo.mdb";

/// A Jet 4 file of so many pages: a right page 0, then pages filled with FirstByte of their number.
std::string MakeDatabase(PageNumber pages, std::uint32_t key = 0);
/// As MakeDatabase, Jet 3, pages of 2048 bytes.
std::string MakeJet3Database(PageNumber pages);
std::uint8_t FirstByte(PageNumber page);

PagerOptions Opened(Sharing sharing, std::size_t cache_pages = 16384);

/// Fills a page from `from` on with `value`, within the open transaction. Failures are returned.
Status FillPage(Pager& pager, PageNumber page, std::uint8_t value, std::size_t from = 0);
/// Adds a page full of `value`.
Status AddPage(Pager& pager, std::uint8_t value);
/// The byte `at` of a page; 0 and a failed expectation when it cannot be read.
std::uint8_t ByteOf(Pager& pager, PageNumber page, std::size_t at = 100);

/// One transaction of a test, told by what it does.
struct Change {
  std::string what;
  std::function<Status(Pager&)> make;
};
/// Transactions that follow each other on a database of 40 pages: pages changed, added, cut off,
/// all of it at once, and more than a cache of 16 pages holds.
const std::vector<Change>& SampleChanges();
/// Opens, makes the first `count` sample changes, a transaction each, and closes. Stops at the
/// first failure; `committed` counts what was.
Status MakeChanges(Storage& storage, std::string_view path, std::size_t count,
                   std::size_t& committed);
/// The file before the first and after each sample change.
std::vector<std::string> SampleStates();

}  // namespace zent::jet::testing
