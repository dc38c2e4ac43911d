#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "jet/fakes/MemoryStorage.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/format/JetErrors.h"
#include "jet/storage/Journal.h"
#include "jet/storage/Pager.h"

/// Several openers of one file.
namespace zent::jet::testing {
namespace {

using ::testing::HasSubstr;

class SharedDatabase : public ::testing::Test {
 protected:
  SharedDatabase() { storage_.Put(kPath, MakeDatabase(30)); }

  std::unique_ptr<Pager> Open(Sharing sharing, std::string computer = "PC1") {
    PagerOptions options = Opened(sharing, 64);
    options.user.computer = std::move(computer);
    Result<std::unique_ptr<Pager>> pager = Pager::Open(storage_, kPath, options);
    EXPECT_TRUE(pager.ok()) << (pager.ok() ? "" : pager.error().description);
    return pager.ok() ? std::move(pager.value()) : nullptr;
  }
  /// Commits page 3 full of `value`.
  static Status Save(Pager& pager, std::uint8_t value) {
    PageTransaction transaction(pager);
    if (!transaction.status().ok()) return transaction.status();
    if (Status filled = FillPage(pager, 3, value); !filled.ok()) return filled;
    return transaction.Commit();
  }

  MemoryStorage storage_;
};

struct OpenCase {
  const char* what;
  Sharing first;
  Sharing second;
  int number;
};

TEST_F(SharedDatabase, IsRefusedWithTheNumberThatTellsWhy) {
  const OpenCase cases[] = {
      {"exclusive after shared", Sharing::Shared, Sharing::Exclusive, kDatabaseInUse},
      {"exclusive after reading", Sharing::ReadOnly, Sharing::Exclusive, kDatabaseInUse},
      {"exclusive twice", Sharing::Exclusive, Sharing::Exclusive, kDatabaseInUse},
      {"shared after exclusive", Sharing::Exclusive, Sharing::Shared, kOpenedExclusively},
      {"reading after exclusive", Sharing::Exclusive, Sharing::ReadOnly, kOpenedExclusively},
      {"shared twice", Sharing::Shared, Sharing::Shared, 0},
  };
  for (const OpenCase& row : cases) {
    SCOPED_TRACE(row.what);
    const auto first = Open(row.first);
    EXPECT_EQ(Pager::Open(storage_, kPath, Opened(row.second)).number(), row.number);
  }
}

TEST_F(SharedDatabase, NamesTheUsersWhoKeepItFromBeingExclusive) {
  const auto one = Open(Sharing::Shared, "ANNA");
  const auto two = Open(Sharing::ReadOnly, "BERT");
  const auto refused = Pager::Open(storage_, kPath, Opened(Sharing::Exclusive));
  EXPECT_THAT(refused.error().description, HasSubstr("Admin on ANNA, Admin on BERT"));
  const std::vector<User> users = one->Users().value_or({});
  ASSERT_EQ(users.size(), 2U);
  EXPECT_EQ(users[0], (User{.computer = "ANNA", .name = "Admin", .slot = 1, .foreign = false}));
  EXPECT_EQ(users[1], (User{.computer = "BERT", .name = "Admin", .slot = 2, .foreign = false}));
}

TEST_F(SharedDatabase, LeavesNoLockFileBehind) {
  auto one = Open(Sharing::Shared);
  auto two = Open(Sharing::Shared);
  EXPECT_TRUE(storage_.Has(LockFile::PathFor(kPath)));
  one.reset();
  EXPECT_TRUE(storage_.Has(LockFile::PathFor(kPath)));
  two.reset();
  EXPECT_EQ(storage_.Names(), std::vector<std::string>{std::string(kPath)});
}

TEST_F(SharedDatabase, HasOneTransactionAtATime) {
  const auto one = Open(Sharing::Shared);
  const auto two = Open(Sharing::Shared);
  ASSERT_TRUE(one->Begin().ok());
  const Status refused = two->Begin();
  EXPECT_EQ(refused.number(), 3050);
  EXPECT_THAT(refused.error().description, HasSubstr("another user has a transaction open"));
  EXPECT_EQ(storage_.pauses(), 2);
  ASSERT_TRUE(one->Rollback().ok());
  EXPECT_TRUE(Save(*two, 0x22).ok());
}

TEST_F(SharedDatabase, WaitsForTheOtherTransactionToEnd) {
  const auto one = Open(Sharing::Shared);
  const auto two = Open(Sharing::Shared);
  ASSERT_TRUE(one->Begin().ok());
  ASSERT_TRUE(FillPage(*one, 3, 0x11).ok());
  storage_.on_pause = [&] {
    if (one->in_transaction()) {
      EXPECT_TRUE(one->Commit().ok());
    }
  };
  ASSERT_TRUE(two->Begin().ok());
  EXPECT_EQ(ByteOf(*two, 3), 0x11);
}

TEST_F(SharedDatabase, ShowsOthersOnlyWhatIsCommitted) {
  const auto writer = Open(Sharing::Shared);
  const auto reader = Open(Sharing::ReadOnly);
  ASSERT_TRUE(writer->Begin().ok());
  ASSERT_TRUE(FillPage(*writer, 3, 0x99).ok());
  ASSERT_TRUE(AddPage(*writer, 0x98).ok());
  EXPECT_EQ(ByteOf(*reader, 3), FirstByte(3));
  EXPECT_EQ(reader->Read(30).number(), kCannotOpenDatabase);
  ASSERT_TRUE(writer->Commit().ok());
  EXPECT_EQ(ByteOf(*reader, 3), 0x99);
  EXPECT_EQ(ByteOf(*reader, 30), 0x98);
}

TEST_F(SharedDatabase, KeepsAReadersStateUntilItsScopeEnds) {
  const auto writer = Open(Sharing::Shared);
  const auto reader = Open(Sharing::ReadOnly);
  {
    const ReadScope scope(*reader);
    ASSERT_TRUE(scope.status().ok());
    EXPECT_EQ(ByteOf(*reader, 3), FirstByte(3));
    EXPECT_EQ(Save(*writer, 0x99).number(), 3050);
    EXPECT_EQ(ByteOf(*reader, 3), FirstByte(3));
  }
  EXPECT_EQ(ByteOf(*writer, 3), FirstByte(3));  // the commit that failed rolled back
  EXPECT_TRUE(Save(*writer, 0x99).ok());
  EXPECT_EQ(ByteOf(*reader, 3), 0x99);
}

TEST_F(SharedDatabase, CommitsWhenTheReadersHaveLeft) {
  const auto writer = Open(Sharing::Shared);
  const auto reader = Open(Sharing::ReadOnly);
  auto scope = std::make_unique<ReadScope>(*reader);
  bool left = false;
  storage_.on_pause = [&] {
    if (std::exchange(left, true)) return;
    // While the writer waits nobody else gets in.
    EXPECT_EQ(Pager::Open(storage_, kPath, Opened(Sharing::ReadOnly)).number(), 3050);
    scope.reset();
  };
  EXPECT_TRUE(Save(*writer, 0x99).ok());
  EXPECT_EQ(ByteOf(*reader, 3), 0x99);
}

TEST_F(SharedDatabase, KeepsReadersOutOfWhatHasSpilled) {
  PagerOptions small = Opened(Sharing::Shared, 16);
  const auto writer = Pager::Open(storage_, kPath, small);
  const auto reader = Open(Sharing::ReadOnly);
  ASSERT_TRUE(writer.ok());
  ASSERT_TRUE(writer.value()->Begin().ok());
  for (PageNumber page = 1; page < 30; ++page) {
    ASSERT_TRUE(FillPage(*writer.value(), page, 0x66).ok());
  }
  ASSERT_GT(writer.value()->counters().spills, 0U);
  EXPECT_EQ(reader->Read(3).number(), 3050);
  ASSERT_TRUE(writer.value()->Rollback().ok());
  EXPECT_EQ(ByteOf(*reader, 3), FirstByte(3));
}

TEST_F(SharedDatabase, IsOpenedToBeReadWhenAWriterIsDoneWithIt) {
  const auto writer = Pager::Open(storage_, kPath, Opened(Sharing::Shared, 16));
  ASSERT_TRUE(writer.ok());
  ASSERT_TRUE(writer.value()->Begin().ok());
  for (PageNumber page = 1; page < 30; ++page) {
    ASSERT_TRUE(FillPage(*writer.value(), page, 0x66).ok());
  }
  ASSERT_GT(writer.value()->counters().spills, 0U);  // half of it is in the file, with its stamp
  storage_.ForbidWriting();
  EXPECT_EQ(Pager::Open(storage_, kPath, Opened(Sharing::ReadOnly)).number(), 3050);

  storage_.on_pause = [&] {
    if (writer.value()->in_transaction()) {
      EXPECT_TRUE(writer.value()->Commit().ok());
    }
  };
  const auto reader = Open(Sharing::ReadOnly);
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(ByteOf(*reader, 3), 0x66);
}

TEST_F(SharedDatabase, BeginsWithoutWaitingWithinAReadScope) {
  const auto one = Open(Sharing::Shared);
  const auto two = Open(Sharing::Shared);
  const ReadScope scope(*two);
  ASSERT_TRUE(one->Begin().ok());
  EXPECT_EQ(two->Begin().number(), 3050);
  EXPECT_EQ(storage_.pauses(), 0);
  ASSERT_TRUE(one->Rollback().ok());
  ASSERT_TRUE(two->Begin().ok());
  ASSERT_TRUE(FillPage(*two, 3, 0x31).ok());
  ASSERT_TRUE(two->Commit().ok());
  EXPECT_EQ(ByteOf(*two, 3), 0x31);
  EXPECT_EQ(one->Begin().number(), 0);
}

/// A program that knows nothing of our marks takes slot 2 of the lock file; null when it cannot.
std::unique_ptr<StoredFile> EnterAsAnotherKind(Storage& storage) {
  auto file = storage.Open(LockFile::PathFor(kPath), Sharing::Shared);
  std::string entry(64, '\0');
  entry.replace(0, 6, "OFFICE").replace(32, 5, "Chris");
  const bool entered = file.ok() && file.value()->TryLock(0x10000002, 1, true).value_or(false) &&
                       file.value()->WriteAt(64, AsBytes(entry)).ok();
  return entered ? std::move(file.value()) : nullptr;
}

TEST_F(SharedDatabase, IsNotWrittenWhileAProgramOfAnotherKindHasASlot) {
  const auto ours = Open(Sharing::Shared);
  const auto other = EnterAsAnotherKind(storage_);
  ASSERT_NE(other, nullptr);

  const Status refused = ours->Begin();
  EXPECT_EQ(refused.number(), kDatabaseInUse);
  EXPECT_EQ(ByteOf(*ours, 3), FirstByte(3));
  const std::vector<User> users = ours->Users().value_or({});
  ASSERT_EQ(users.size(), 2U);
  EXPECT_EQ(users[1], (User{.computer = "OFFICE", .name = "Chris", .slot = 2, .foreign = true}));

  ASSERT_TRUE(other->Unlock(0x10000002, 1).ok());
  EXPECT_TRUE(Save(*ours, 0x12).ok());
}

TEST_F(SharedDatabase, IsNotOpenedExclusivelyWhileAProgramOfAnotherKindHasASlot) {
  storage_.Put(LockFile::PathFor(kPath), std::string(64, '\0'));
  // Left behind by a program that was killed: nobody has a slot.
  EXPECT_NE(Open(Sharing::Exclusive), nullptr);
  EXPECT_EQ(storage_.pauses(), 0);

  const auto other = EnterAsAnotherKind(storage_);
  ASSERT_NE(other, nullptr);
  const auto refused = Pager::Open(storage_, kPath, Opened(Sharing::Exclusive));
  EXPECT_EQ(refused.number(), kDatabaseInUse);
  EXPECT_THAT(refused.error().description, HasSubstr("Chris on OFFICE"));

  storage_.on_pause = [&] { static_cast<void>(other->Unlock(0x10000002, 1)); };
  EXPECT_NE(Open(Sharing::Exclusive), nullptr);
}

TEST_F(SharedDatabase, OfAWriterThatDiedIsRecoveredByWhoeverReadsNext) {
  // A machine on which a transaction is half in the file, its writer gone.
  const auto half = [&] {
    MemoryStorage machine;
    machine.Put(kPath, MakeDatabase(30));
    auto writer = Pager::Open(machine, kPath, Opened(Sharing::Shared, 16));
    EXPECT_TRUE(writer.value()->Begin().ok());
    for (PageNumber page = 1; page < 30; ++page) {
      EXPECT_TRUE(FillPage(*writer.value(), page, 0x66).ok());
    }
    machine.StopAt(1);
    writer.value().reset();
    return machine.AfterPowerLoss({.kind = PowerLoss::KeepsAll});
  }();
  ASSERT_NE(half->Bytes(kPath), MakeDatabase(30));
  // An opener who was there before the writer died meets it in the middle of its work.
  storage_.Put(kPath, MakeDatabase(30));
  const auto reader = Open(Sharing::ReadOnly);
  {
    const auto file = storage_.Open(kPath, Sharing::Shared);
    ASSERT_TRUE(file.value()->WriteAt(0, AsBytes(half->Bytes(kPath))).ok());
    storage_.Put(Journal::PathFor(kPath), half->Bytes(Journal::PathFor(kPath)));
  }
  EXPECT_EQ(ByteOf(*reader, 3), FirstByte(3));
  EXPECT_EQ(storage_.Bytes(kPath), MakeDatabase(30));
  EXPECT_FALSE(storage_.Has(Journal::PathFor(kPath)));

  half->ForbidWriting();
  const auto refused = Pager::Open(*half, kPath, Opened(Sharing::ReadOnly));
  EXPECT_EQ(refused.number(), kCannotOpenFile);
  EXPECT_THAT(refused.error().description, HasSubstr("undoing it needs the right to write"));
}

TEST_F(SharedDatabase, IsReadWhereNothingCanBeWritten) {
  storage_.ForbidWriting();
  EXPECT_EQ(Pager::Open(storage_, kPath, Opened(Sharing::Shared)).number(), kCannotOpenFile);
  EXPECT_EQ(Pager::Open(storage_, kPath, Opened(Sharing::Exclusive)).number(), kCannotOpenFile);
  const auto reader = Open(Sharing::ReadOnly);
  EXPECT_EQ(ByteOf(*reader, 3), FirstByte(3));
  EXPECT_EQ(storage_.Names().size(), 1U);
}

}  // namespace
}  // namespace zent::jet::testing
