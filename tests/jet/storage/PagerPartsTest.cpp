#include <gtest/gtest.h>

#include <functional>

#include "jet/fakes/TestDatabase.h"
#include "jet/format/JetErrors.h"

/// Parts of a transaction that can be undone alone.
namespace zent::jet::testing {
namespace {

constexpr PageNumber kPages = 40;

/// A database open in a transaction that has changed page 3 and added page 40.
class InTransaction {
 public:
  explicit InTransaction(std::size_t cache_pages = 4096) {
    storage.Put(kPath, MakeDatabase(kPages));
    pager = std::move(Pager::Open(storage, kPath, Opened(Sharing::Exclusive, cache_pages)).value());
    EXPECT_TRUE(pager->Begin().ok());
    EXPECT_TRUE(FillPage(*pager, 3, 0x31).ok());
    EXPECT_TRUE(AddPage(*pager, 0x41).ok());
  }

  MemoryStorage storage;
  std::unique_ptr<Pager> pager;
};

TEST(PagerPart, IsUndoneAlone) {
  struct Case {
    const char* what;
    std::size_t cache_pages;
    std::function<void(Pager&)> change;
  };
  const Case cases[] = {
      {"nothing", 4096, [](Pager&) {}},
      {"a page that the transaction had not touched", 4096,
       [](Pager& pager) { EXPECT_TRUE(FillPage(pager, 5, 0x99).ok()); }},
      {"a page that it had changed, twice", 4096,
       [](Pager& pager) {
         EXPECT_TRUE(FillPage(pager, 3, 0x98).ok());
         EXPECT_TRUE(FillPage(pager, 3, 0x99).ok());
       }},
      {"a page that it had added, and more pages", 4096,
       [](Pager& pager) {
         EXPECT_TRUE(FillPage(pager, 40, 0x99).ok());
         EXPECT_TRUE(AddPage(pager, 0x99).ok());
       }},
      {"more than the cache holds", 16,
       [](Pager& pager) {
         for (PageNumber page = 1; page < kPages; ++page) {
           EXPECT_TRUE(FillPage(pager, page, 0x99).ok());
         }
         for (int i = 0; i < 30; ++i) EXPECT_TRUE(AddPage(pager, 0x99).ok());
       }},
      {"a part within, kept", 4096,
       [](Pager& pager) {
         EXPECT_TRUE(FillPage(pager, 5, 0x97).ok());
         EXPECT_TRUE(pager.BeginPart().ok());
         EXPECT_TRUE(FillPage(pager, 5, 0x98).ok());
         EXPECT_TRUE(FillPage(pager, 6, 0x99).ok());
         EXPECT_TRUE(pager.Commit().ok());
       }},
      {"a part within, undone", 4096,
       [](Pager& pager) {
         EXPECT_TRUE(FillPage(pager, 5, 0x97).ok());
         EXPECT_TRUE(pager.BeginPart().ok());
         EXPECT_TRUE(FillPage(pager, 5, 0x98).ok());
         EXPECT_TRUE(pager.Rollback().ok());
         EXPECT_EQ(ByteOf(pager, 5), 0x97);
       }},
      {"a step within that failed", 4096,
       [](Pager& pager) {
         EXPECT_TRUE(pager.Begin().ok());
         EXPECT_TRUE(FillPage(pager, 5, 0x99).ok());
         EXPECT_TRUE(pager.Rollback().ok());
         EXPECT_EQ(FillPage(pager, 5, 0x98).number(), kInvalidOperation);
       }},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    InTransaction given(row.cache_pages);
    Pager& pager = *given.pager;

    ASSERT_TRUE(pager.BeginPart().ok());
    row.change(pager);
    ASSERT_TRUE(pager.Rollback().ok());

    EXPECT_EQ(pager.page_count(), kPages + 1);
    EXPECT_EQ(ByteOf(pager, 3), 0x31);
    EXPECT_EQ(ByteOf(pager, 5), FirstByte(5));
    EXPECT_EQ(ByteOf(pager, 40), 0x41);
    EXPECT_TRUE(FillPage(pager, 7, 0x71).ok());
    ASSERT_TRUE(pager.Commit().ok());
    InTransaction expected;
    EXPECT_TRUE(FillPage(*expected.pager, 7, 0x71).ok());
    ASSERT_TRUE(expected.pager->Commit().ok());
    EXPECT_TRUE(given.storage.Bytes(kPath) == expected.storage.Bytes(kPath));
  }
}

TEST(PagerPart, BelongsToTheTransactionOnceCommitted) {
  InTransaction given;
  Pager& pager = *given.pager;
  ASSERT_TRUE(pager.BeginPart().ok());
  ASSERT_TRUE(FillPage(pager, 5, 0x51).ok());
  ASSERT_TRUE(pager.Commit().ok());
  EXPECT_EQ(ByteOf(pager, 5), 0x51);
  ASSERT_TRUE(pager.Rollback().ok());
  EXPECT_EQ(ByteOf(pager, 5), FirstByte(5));
  EXPECT_TRUE(given.storage.Bytes(kPath) == MakeDatabase(kPages));
}

TEST(PagerPart, IsATransactionWhereNoneIsOpen) {
  MemoryStorage storage;
  storage.Put(kPath, MakeDatabase(kPages));
  const auto pager = std::move(Pager::Open(storage, kPath, Opened(Sharing::Exclusive)).value());
  ASSERT_TRUE(pager->BeginPart().ok());
  ASSERT_TRUE(FillPage(*pager, 5, 0x51).ok());
  ASSERT_TRUE(pager->Rollback().ok());
  EXPECT_FALSE(pager->in_transaction());
  EXPECT_EQ(ByteOf(*pager, 5), FirstByte(5));
}

TEST(PagerPart, TakesTheTransactionWithItWhenItCutsTheFile) {
  InTransaction given;
  Pager& pager = *given.pager;
  ASSERT_TRUE(pager.BeginPart().ok());
  ASSERT_TRUE(pager.Shrink(20).ok());
  ASSERT_TRUE(pager.Rollback().ok());
  EXPECT_EQ(FillPage(pager, 5, 0x51).number(), kInvalidOperation);
  EXPECT_FALSE(pager.Commit().ok());
  EXPECT_TRUE(given.storage.Bytes(kPath) == MakeDatabase(kPages));
}

}  // namespace
}  // namespace zent::jet::testing
