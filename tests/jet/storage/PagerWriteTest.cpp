#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "jet/fakes/MemoryStorage.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/format/JetErrors.h"
#include "jet/storage/Journal.h"
#include "jet/storage/Pager.h"

namespace zent::jet::testing {
namespace {

class PagerWrite : public ::testing::Test {
 protected:
  Pager& Over(PageNumber pages, std::size_t cache_pages = 16384,
              Sharing sharing = Sharing::Exclusive) {
    before_ = MakeDatabase(pages);
    storage_.Put(kPath, before_);
    Result<std::unique_ptr<Pager>> pager =
        Pager::Open(storage_, kPath, Opened(sharing, cache_pages));
    EXPECT_TRUE(pager.ok());
    pager_ = std::move(pager.value());
    return *pager_;
  }

  MemoryStorage storage_;
  std::string before_;
  std::unique_ptr<Pager> pager_;
};

TEST_F(PagerWrite, WritesNothingBeforeTheCommit) {
  Pager& pager = Over(10);
  ASSERT_TRUE(pager.Begin().ok());
  ASSERT_TRUE(FillPage(pager, 4, 0x44).ok());
  ASSERT_TRUE(AddPage(pager, 0x55).ok());
  EXPECT_EQ(pager.page_count(), 11U);
  EXPECT_EQ(ByteOf(pager, 4), 0x44);
  EXPECT_EQ(storage_.Bytes(kPath), before_);

  ASSERT_TRUE(pager.Commit().ok());

  EXPECT_EQ(storage_.Bytes(kPath).size(), 11 * kPage);
  EXPECT_EQ(storage_.Bytes(kPath).substr(4 * kPage, kPage), std::string(kPage, 0x44));
  EXPECT_EQ(storage_.Bytes(kPath).substr(0, kPage), before_.substr(0, kPage));
}

TEST_F(PagerWrite, RollsBackToWhatWas) {
  Pager& pager = Over(10);
  ASSERT_TRUE(pager.Begin().ok());
  ASSERT_TRUE(FillPage(pager, 4, 0x44).ok());
  ASSERT_TRUE(AddPage(pager, 0x55).ok());
  ASSERT_TRUE(pager.Shrink(6).ok());
  ASSERT_TRUE(pager.Rollback().ok());
  EXPECT_FALSE(pager.in_transaction());
  EXPECT_EQ(pager.page_count(), 10U);
  EXPECT_EQ(ByteOf(pager, 4), FirstByte(4));
  EXPECT_EQ(ByteOf(pager, 9), FirstByte(9));
  EXPECT_EQ(storage_.Bytes(kPath), before_);
}

TEST_F(PagerWrite, RollsBackWhatHasSpilled) {
  Pager& pager = Over(40, 16);
  ASSERT_TRUE(pager.Begin().ok());
  for (PageNumber page = 0; page < 39; ++page) {
    ASSERT_TRUE(FillPage(pager, page + 1, 0x44).ok());
    ASSERT_TRUE(AddPage(pager, 0x55).ok());
  }
  EXPECT_GT(pager.counters().spills, 0U);
  EXPECT_NE(storage_.Bytes(kPath), before_);
  EXPECT_EQ(ByteOf(pager, 3), 0x44);
  EXPECT_EQ(ByteOf(pager, 0, 0xDE0), 0);  // page 0 is shown without the stamp
  ASSERT_TRUE(pager.Rollback().ok());
  EXPECT_EQ(storage_.Bytes(kPath), before_);
  EXPECT_EQ(ByteOf(pager, 3), FirstByte(3));
}

TEST_F(PagerWrite, RollsBackWhenItIsClosed) {
  Pager& pager = Over(10);
  ASSERT_TRUE(pager.Begin().ok());
  ASSERT_TRUE(FillPage(pager, 4, 0x44).ok());
  pager_.reset();
  EXPECT_EQ(storage_.Bytes(kPath), before_);
  EXPECT_EQ(storage_.Names().size(), 1U);
}

TEST_F(PagerWrite, CountsNestedTransactions) {
  Pager& pager = Over(10);
  ASSERT_TRUE(pager.Begin().ok());
  ASSERT_TRUE(pager.Begin().ok());
  ASSERT_TRUE(FillPage(pager, 4, 0x44).ok());
  ASSERT_TRUE(pager.Commit().ok());
  EXPECT_TRUE(pager.in_transaction());
  EXPECT_EQ(storage_.Bytes(kPath), before_);
  ASSERT_TRUE(pager.Commit().ok());
  EXPECT_FALSE(pager.in_transaction());
  EXPECT_NE(storage_.Bytes(kPath), before_);
}

TEST_F(PagerWrite, LetsAnInnerRollbackUndoEverything) {
  Pager& pager = Over(10);
  ASSERT_TRUE(pager.Begin().ok());
  ASSERT_TRUE(FillPage(pager, 3, 0x33).ok());
  ASSERT_TRUE(pager.Begin().ok());
  ASSERT_TRUE(FillPage(pager, 4, 0x44).ok());
  ASSERT_TRUE(pager.Rollback().ok());

  EXPECT_EQ(ByteOf(pager, 3), FirstByte(3));
  EXPECT_EQ(pager.Edit(5).number(), kInvalidOperation);
  EXPECT_EQ(pager.Begin().number(), kInvalidOperation);
  EXPECT_EQ(pager.Commit().number(), kInvalidOperation);
  EXPECT_FALSE(pager.in_transaction());
  EXPECT_EQ(storage_.Bytes(kPath), before_);
  EXPECT_TRUE(pager.Begin().ok());
}

TEST_F(PagerWrite, RefusesChangesOutsideATransaction) {
  Pager& pager = Over(10);
  EXPECT_EQ(pager.Edit(1).number(), kInvalidOperation);
  EXPECT_EQ(pager.Append().number(), kInvalidOperation);
  EXPECT_EQ(pager.Shrink(1).number(), kInvalidOperation);
  EXPECT_EQ(pager.Commit().number(), kInvalidOperation);
  EXPECT_EQ(pager.Rollback().number(), kInvalidOperation);
  EXPECT_EQ(storage_.changing_calls(), 0);
}

TEST_F(PagerWrite, RefusesToCommitWhileAPageIsBeingChanged) {
  Pager& pager = Over(10);
  ASSERT_TRUE(pager.Begin().ok());
  {
    Result<PageEdit> edit = pager.Edit(4);
    ASSERT_TRUE(edit.ok());
    edit.value().bytes()[7] = 0x77;
    EXPECT_EQ(pager.Commit().number(), kInvalidOperation);
    EXPECT_TRUE(pager.in_transaction());
  }
  EXPECT_TRUE(pager.Commit().ok());
  EXPECT_EQ(storage_.Bytes(kPath)[4 * kPage + 7], 0x77);
}

TEST_F(PagerWrite, RefusesToCutOffWhatIsInUse) {
  Pager& pager = Over(10);
  ASSERT_TRUE(pager.Begin().ok());
  EXPECT_EQ(pager.Shrink(0).number(), kInvalidArgument);
  EXPECT_EQ(pager.Shrink(11).number(), kInvalidArgument);
  const Result<PageView> view = pager.Read(8);
  ASSERT_TRUE(view.ok());
  EXPECT_EQ(pager.Shrink(5).number(), kInvalidOperation);
  EXPECT_TRUE(pager.Shrink(9).ok());
  EXPECT_EQ(pager.Read(9).number(), kCannotOpenDatabase);
}

TEST_F(PagerWrite, WritesEachPageOnceInOrderTogether) {
  Pager& pager = Over(300);
  ASSERT_TRUE(pager.Begin().ok());
  for (PageNumber page = 299; page >= 100; --page) {
    ASSERT_TRUE(FillPage(pager, page, 0x11).ok());
    ASSERT_TRUE(FillPage(pager, page, 0x22).ok());
  }
  ASSERT_TRUE(pager.Commit().ok());
  EXPECT_EQ(pager.counters().pages_written, 200U);
  EXPECT_EQ(pager.counters().pages_journalled, 200U);
  EXPECT_EQ(pager.counters().write_calls, 4U);  // of 64 pages at most
  EXPECT_EQ(storage_.flushes(), 4);             // journal, stamp, pages, stamp taken off
}

TEST_F(PagerWrite, WritesNothingForATransactionThatChangesNothing) {
  Pager& pager = Over(10);
  ASSERT_TRUE(pager.Begin().ok());
  EXPECT_EQ(ByteOf(pager, 3), FirstByte(3));
  ASSERT_TRUE(pager.Commit().ok());
  EXPECT_EQ(storage_.changing_calls(), 0);
}

TEST_F(PagerWrite, RefusesToWriteWhatIsOpenedToBeRead) {
  Pager& pager = Over(10, 64, Sharing::ReadOnly);
  EXPECT_EQ(pager.Writable().number(), kReadOnly);
  EXPECT_EQ(pager.Begin().number(), kReadOnly);
  EXPECT_EQ(pager.Edit(1).number(), kInvalidOperation);
  EXPECT_EQ(storage_.Bytes(kPath), before_);
}

TEST_F(PagerWrite, ShowsEarlierViewsTheChangesButNotTheRollback) {
  Pager& pager = Over(10);
  ASSERT_TRUE(pager.Begin().ok());
  const Result<PageView> view = pager.Read(4);
  ASSERT_TRUE(view.ok());
  ASSERT_TRUE(FillPage(pager, 4, 0x44).ok());
  EXPECT_EQ(view.value().bytes()[0], 0x44);
  ASSERT_TRUE(pager.Rollback().ok());
  EXPECT_EQ(view.value().bytes()[0], 0x44);
  EXPECT_EQ(ByteOf(pager, 4), FirstByte(4));
}

/// Every changing call fails once, for two reasons; the transaction ends before or after.
TEST(PagerFailure, AtAnyCallLeavesBeforeOrAfterAndTheNextWorks) {
  const std::vector<std::string> states = SampleStates();
  for (const int number : {kDeviceIoError, kDiskFull}) {
    int failures = 0;
    for (int call = 1; call < 200; ++call) {
      SCOPED_TRACE(::testing::Message() << "call " << call << ", error " << number);
      MemoryStorage storage;
      storage.Put(kPath, states.front());
      storage.FailAt(call, number);
      std::size_t committed = 0;
      const Status made = MakeChanges(storage, kPath, SampleChanges().size(), committed);
      if (made.ok()) continue;
      ++failures;
      EXPECT_EQ(made.error().source, "DAO");
      EXPECT_EQ(made.number(), number == kDiskFull ? kDiskSpace : 3043);
      ASSERT_EQ(Pager::Open(storage, kPath, Opened(Sharing::Exclusive)).number(), 0);
      ASSERT_EQ(storage.Bytes(kPath), states[committed]);
    }
    EXPECT_GT(failures, 30);
  }
}

TEST(PagerFailure, OfSpaceAtAnyPointLosesNothing) {
  const std::vector<std::string> states = SampleStates();
  for (std::uint64_t room = 0; room < 90 * kPage; room += 700) {
    SCOPED_TRACE(room);
    MemoryStorage storage;
    storage.Put(kPath, states.front());
    storage.LimitSpace(states.front().size() + room);
    std::size_t committed = 0;
    const Status made = MakeChanges(storage, kPath, SampleChanges().size(), committed);
    if (made.ok()) {
      EXPECT_EQ(storage.Bytes(kPath), states.back());
      continue;
    }
    EXPECT_EQ(made.number(), kDiskSpace);
    ASSERT_EQ(Pager::Open(storage, kPath, Opened(Sharing::Exclusive)).number(), 0);
    ASSERT_EQ(storage.Bytes(kPath), states[committed]);
  }
}

}  // namespace
}  // namespace zent::jet::testing
