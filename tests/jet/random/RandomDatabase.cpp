#include "jet/random/RandomDatabase.h"

#include <gtest/gtest.h>

#include <utility>

#include "jet/schema/NewDatabase.h"

namespace zent::jet::testing {
namespace {

// Small enough for transactions to outgrow it.
constexpr std::size_t kCacheBytes = std::size_t{64} * 4096;

}  // namespace

RandomDatabase::RandomDatabase(Storage& storage, std::string path, unsigned seed, Palette palette)
    : storage_(storage), path_(std::move(path)), random_(seed, palette) {
  const Status created = CreateDatabase(storage_, path_, NewDatabase());
  EXPECT_TRUE(created.ok());
  Open();
}

void RandomDatabase::Open() {
  PagerOptions options;
  options.cache_bytes = kCacheBytes;
  auto pager = Pager::Open(storage_, path_, options);
  ASSERT_TRUE(pager.ok()) << pager.error().description;
  pager_ = std::move(pager.value());
  auto catalog = Catalog::Open(*pager_);
  ASSERT_TRUE(catalog.ok()) << catalog.error().description;
  catalog_ = std::move(catalog.value());
  ASSERT_TRUE(pager_->Begin().ok());
}

void RandomDatabase::Close() {
  catalog_.reset();
  pager_.reset();
  model_ = committed_;
}

void RandomDatabase::Commit() {
  const Status done = pager_->Commit();
  EXPECT_TRUE(done.ok()) << done.error().description;
  committed_ = model_;
  ASSERT_TRUE(pager_->Begin().ok());
}

void RandomDatabase::Rollback() {
  ASSERT_TRUE(pager_->Rollback().ok());
  catalog_->Forget();
  model_ = committed_;
  ASSERT_TRUE(pager_->Begin().ok());
}

void RandomDatabase::Step() {
  switch (random_.Pick(60)) {
    case 0:
      return Rollback();
    case 1:
      // As a program that ends; what was not committed is gone.
      Close();
      return Open();
    case 2:
    case 3:
    case 4:
      return Commit();
    default:
      break;
  }
  ModelTable* const table = PickTable();
  if (table == nullptr || random_.Chance(6)) return ChangeStructure();
  ChangeRows(*table);
}

bool RandomDatabase::Expect(const char* what, const Status& done, const Faults& faults) {
  if (done.ok()) {
    EXPECT_TRUE(faults.empty()) << what << " must be refused with " << *faults.begin();
    ++made_;
    return true;
  }
  EXPECT_TRUE(faults.contains(done.number()))
      << what << ": " << done.number() << " " << done.error().description;
  ++refused_;
  return false;
}

ModelTable* RandomDatabase::PickTable() {
  return model_.tables.empty() ? nullptr : &model_.tables[random_.Pick(model_.tables.size())];
}

void RandomDatabase::Check() {
  ExpectModel(*catalog_, model_, true);
  if (::testing::Test::HasFailure()) return;
  Commit();
  EXPECT_EQ(FaultsOfFile(*pager_), std::vector<std::string>());
}

}  // namespace zent::jet::testing
