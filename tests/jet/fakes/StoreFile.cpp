#include "jet/fakes/StoreFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "jet/fakes/TestDatabase.h"
#include "jet/format/DataPage.h"
#include "jet/format/FileHeader.h"
#include "jet/format/UsageMap.h"

namespace zent::jet::testing {
namespace {

constexpr PageNumber kFixedPages = 6;

}  // namespace

std::string EmptyStoreFile() {
  std::string bytes(kFixedPages * kPage, '\0');
  const MutableBytes all(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size());
  EXPECT_TRUE(WriteFileHeader(FileHeader(), all.first(kPage)).ok());
  InitGlobalMapPage(all.subspan(kGlobalMapPage * kPage, kPage));
  return bytes;
}

StoreFile::StoreFile(std::size_t cache_pages) : StoreFile(EmptyStoreFile(), cache_pages) {}

StoreFile::StoreFile(const std::string& bytes, std::size_t cache_pages) {
  memory_.Put(kPath, bytes);
  Open(memory_, kPath, cache_pages);
}

StoreFile::StoreFile(Storage& storage, std::string_view path, std::size_t cache_pages) {
  Open(storage, path, cache_pages);
}

void StoreFile::Open(Storage& storage, std::string_view path, std::size_t cache_pages) {
  Result<std::unique_ptr<Pager>> pager =
      Pager::Open(storage, path, Opened(Sharing::Exclusive, cache_pages));
  EXPECT_TRUE(pager.ok()) << pager.error().description;
  pager_ = std::move(pager.value());
  maps_ = std::make_unique<UsageMaps>(*pager_);
  Begin();
}

void StoreFile::Begin() { EXPECT_TRUE(pager_->Begin().ok()); }

void StoreFile::Commit() {
  const Status done = pager_->Commit();
  EXPECT_TRUE(done.ok()) << done.error().description;
  Begin();
}

void StoreFile::Rollback() {
  EXPECT_TRUE(pager_->Rollback().ok());
  Begin();
}

std::string StoreFile::Bytes() const { return memory_.Bytes(kPath); }

RowPointer StoreFile::NewMap() {
  const Result<RowPointer> map = maps_->Create(map_page_);
  EXPECT_TRUE(map.ok()) << map.error().description;
  map_page_ = map.value().page;
  return map.value();
}

PageNumber StoreFile::NewPage() {
  const Result<PageEdit> page = maps_->allocator().Allocate();
  EXPECT_TRUE(page.ok());
  return page.value().page();
}

std::vector<PageNumber> StoreFile::FreePages() {
  const Result<std::vector<PageNumber>> pages = maps_->Pages(kGlobalMap);
  EXPECT_TRUE(pages.ok());
  return pages.value();
}

std::vector<PageNumber> StoreFile::UsedPages() {
  const std::vector<PageNumber> free = FreePages();
  std::vector<PageNumber> used;
  for (PageNumber page = kFixedPages; page < pager_->page_count(); ++page) {
    if (!std::binary_search(free.begin(), free.end(), page)) used.push_back(page);
  }
  return used;
}

void StoreFile::Overwrite(PageNumber page, std::size_t at, const std::vector<std::uint8_t>& bytes) {
  Result<PageEdit> edit = pager_->Edit(page);
  ASSERT_TRUE(edit.ok());
  std::copy(bytes.begin(), bytes.end(),
            edit.value().bytes().begin() + static_cast<std::ptrdiff_t>(at));
}

void StoreFile::OverwriteU32(PageNumber page, std::size_t at, std::uint32_t value) {
  std::vector<std::uint8_t> bytes(4);
  StoreU32(bytes, 0, value);
  Overwrite(page, at, bytes);
}

}  // namespace zent::jet::testing
