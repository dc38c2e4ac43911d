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

std::string EmptyFile() {
  std::string bytes(kFixedPages * kPage, '\0');
  const MutableBytes all(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size());
  EXPECT_TRUE(WriteFileHeader(FileHeader(), all.first(kPage)).ok());
  const MutableBytes page = all.subspan(kGlobalMapPage * kPage, kPage);
  InitDataPage(JetVersion::Jet4, kUsageMapOwner, page);
  std::vector<std::uint8_t> map = NewUsageMapRow(JetVersion::Jet4);
  const std::vector<std::uint8_t> second = map;
  for (PageNumber free = kFixedPages; SetInlineBit(map, free, true); ++free) {
  }
  EXPECT_TRUE(InsertRow(JetVersion::Jet4, page, map, SlotKind::Row, false));
  EXPECT_TRUE(InsertRow(JetVersion::Jet4, page, second, SlotKind::Row, false));
  return bytes;
}

}  // namespace

StoreFile::StoreFile(std::size_t cache_pages) {
  storage_.Put(kPath, EmptyFile());
  Result<std::unique_ptr<Pager>> pager =
      Pager::Open(storage_, kPath, Opened(Sharing::Exclusive, cache_pages));
  EXPECT_TRUE(pager.ok());
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
