#pragma once

#include <memory>
#include <string>
#include <vector>

#include "jet/fakes/MemoryStorage.h"
#include "jet/format/TableDefinition.h"
#include "jet/storage/Pager.h"
#include "jet/store/UsageMaps.h"

namespace zent::jet::testing {

/// The bytes of a database with nothing in it but its header, a global map and the fixed pages.
std::string EmptyStoreFile();

/// A database that began as EmptyStoreFile, open in one transaction: what tables, trees and maps
/// are built in.
class StoreFile {
 public:
  /// In memory.
  explicit StoreFile(std::size_t cache_pages = 4096);
  /// A file of these bytes instead.
  explicit StoreFile(const std::string& bytes, std::size_t cache_pages = 4096);
  /// Over the database at `path`, which EmptyStoreFile or another StoreFile has made. `storage`
  /// must outlive it.
  StoreFile(Storage& storage, std::string_view path, std::size_t cache_pages = 4096);

  Pager& pager() { return *pager_; }
  UsageMaps& maps() { return *maps_; }

  /// The storage of a file in memory, for its faults and counts.
  MemoryStorage& memory() { return memory_; }

  /// Commits and begins anew.
  void Commit();
  /// Rolls back and begins anew.
  void Rollback();

  /// The file as it is on disk: without what is not committed.
  std::string Bytes() const;

  /// An empty map on the page where the test keeps its maps.
  RowPointer NewMap();
  /// A page of zeros that stands for a definition, to be the owner of pages.
  PageNumber NewPage();

  /// The free pages of the file.
  std::vector<PageNumber> FreePages();
  /// The pages behind the fixed ones that are not free.
  std::vector<PageNumber> UsedPages();

  /// Writes bytes over a page.
  void Overwrite(PageNumber page, std::size_t at, const std::vector<std::uint8_t>& bytes);
  void OverwriteU32(PageNumber page, std::size_t at, std::uint32_t value);

 private:
  void Open(Storage& storage, std::string_view path, std::size_t cache_pages);
  void Begin();

  MemoryStorage memory_;
  std::unique_ptr<Pager> pager_;
  std::unique_ptr<UsageMaps> maps_;
  PageNumber map_page_ = 0;
};

}  // namespace zent::jet::testing
