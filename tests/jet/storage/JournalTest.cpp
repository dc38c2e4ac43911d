#include <gtest/gtest.h>

#include <random>

#include "jet/fakes/MemoryStorage.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/format/JetErrors.h"
#include "jet/storage/Checksum.h"
#include "jet/storage/Journal.h"
#include "jet/storage/Pager.h"

namespace zent::jet::testing {
namespace {

const std::string kJournal = Journal::PathFor(kPath);

/// A disk with a transaction half in the database: 12 pages, of which some are changed and three
/// were added. `bytes` of the first is the whole file before.
std::unique_ptr<MemoryStorage> Interrupted(const std::string& before) {
  MemoryStorage machine;
  machine.Put(kPath, before);
  {
    const auto pager = Pager::Open(machine, kPath, Opened(Sharing::Exclusive, 16));
    EXPECT_TRUE(pager.ok() && pager.value()->Begin().ok());
    for (const PageNumber page : {5U, 2U, 9U, 0U}) {
      EXPECT_TRUE(FillPage(*pager.value(), page, 0x77, 0x300).ok());
    }
    for (int added = 0; added < 3; ++added) EXPECT_TRUE(AddPage(*pager.value(), 0x78).ok());
    // Journal: created, written, flushed, its name as well; stamp: written, flushed; then the pages
    // in three groups; then the flush, at which it stops.
    machine.StopAt(11);
    static_cast<void>(pager.value()->Commit());
    EXPECT_TRUE(machine.stopped());
  }
  return machine.AfterPowerLoss({.kind = PowerLoss::KeepsAll});
}

int OpeningNumber(MemoryStorage& storage) {
  return Pager::Open(storage, kPath, Opened(Sharing::Exclusive)).number();
}

TEST(Journal, UndoesAnInterruptedTransaction) {
  const std::string before = MakeDatabase(12);
  const auto disk = Interrupted(before);
  ASSERT_NE(disk->Bytes(kPath), before);
  ASSERT_TRUE(disk->Has(kJournal));
  EXPECT_EQ(OpeningNumber(*disk), 0);
  EXPECT_EQ(disk->Bytes(kPath), before);
  EXPECT_FALSE(disk->Has(kJournal));
}

TEST(Journal, WaitsForWhoHasItOpenForAMoment) {
  const std::string before = MakeDatabase(12);
  const auto disk = Interrupted(before);
  auto scanner = std::move(disk->Open(kJournal, Sharing::Exclusive).value());
  disk->on_pause = [&] { scanner.reset(); };
  EXPECT_EQ(OpeningNumber(*disk), 0);
  EXPECT_EQ(disk->Bytes(kPath), before);
  EXPECT_EQ(disk->pauses(), 1);

  MemoryStorage storage;
  storage.Put(kJournal, "left behind");
  scanner = std::move(storage.Open(kJournal, Sharing::Exclusive).value());
  storage.on_pause = [&] { scanner.reset(); };
  EXPECT_TRUE(Journal::Create(storage, kPath).ok());
  scanner = std::move(storage.Open(kJournal, Sharing::Exclusive).value());
  storage.on_pause = nullptr;
  EXPECT_FALSE(Journal::Create(storage, kPath).ok());
  scanner.reset();
}

TEST(Journal, IsRefusedDamagedAnywhere) {
  const auto disk = Interrupted(MakeDatabase(12));
  const std::string database = disk->Bytes(kPath);
  const std::string journal = disk->Bytes(kJournal);
  std::mt19937 random(7);
  for (int round = 0; round < 300; ++round) {
    MemoryStorage storage;
    std::string damaged = journal;
    const std::size_t at = random() % damaged.size();
    damaged[at] = static_cast<char>(damaged[at] ^ (1 << random() % 8));
    storage.Put(kPath, database);
    storage.Put(kJournal, damaged);
    SCOPED_TRACE(at);
    // The rest of the header's 512 bytes means nothing.
    if (at >= 72 && at < 512) continue;
    EXPECT_EQ(OpeningNumber(storage), kCannotOpenDatabase);
    EXPECT_EQ(storage.Bytes(kPath), database);
    EXPECT_EQ(storage.Bytes(kJournal), damaged);
  }
}

TEST(Journal, IsRefusedTruncatedAnywhere) {
  const auto disk = Interrupted(MakeDatabase(12));
  const std::string database = disk->Bytes(kPath);
  const std::string journal = disk->Bytes(kJournal);
  for (std::size_t size = 0; size < journal.size(); size += 97) {
    SCOPED_TRACE(size);
    MemoryStorage storage;
    storage.Put(kPath, database);
    storage.Put(kJournal, journal.substr(0, size));
    EXPECT_EQ(OpeningNumber(storage), kCannotOpenDatabase);
    EXPECT_EQ(storage.Bytes(kPath), database);
  }
}

TEST(Journal, IsMissedWhenItIsGone) {
  const auto disk = Interrupted(MakeDatabase(12));
  ASSERT_TRUE(disk->Delete(kJournal).ok());
  for (const Sharing sharing : {Sharing::Exclusive, Sharing::Shared, Sharing::ReadOnly}) {
    const auto pager = Pager::Open(*disk, kPath, Opened(sharing));
    EXPECT_EQ(pager.number(), kCannotOpenDatabase);
  }
}

struct OtherCase {
  const char* what;
  bool same_database;  ///< the file is of the same origin as that of the journal
  bool kept_aside;
};

TEST(Journal, IsNeverAppliedToAnotherFile) {
  constexpr OtherCase kCases[] = {
      {"a backup of the same database", true, false},
      {"another database", false, true},
  };
  for (const OtherCase& row : kCases) {
    SCOPED_TRACE(row.what);
    const auto disk = Interrupted(MakeDatabase(12));
    const std::string journal = disk->Bytes(kJournal);
    std::string other = MakeDatabase(20);
    other[5 * kPage] = 'b';
    if (!row.same_database) other[0x72] ^= 0x01;  // created at another time
    disk->Put(kPath, other);

    EXPECT_EQ(OpeningNumber(*disk), 0);
    EXPECT_EQ(disk->Bytes(kPath), other);
    EXPECT_FALSE(disk->Has(kJournal));
    EXPECT_EQ(disk->Bytes(kJournal + "-other"), row.kept_aside ? journal : "");
  }
}

TEST(Journal, OfAnotherTransactionIsRefused) {
  const auto disk = Interrupted(MakeDatabase(12));
  const auto later = Interrupted(MakeDatabase(12));
  disk->Put(kJournal, later->Bytes(kJournal));
  const std::string database = disk->Bytes(kPath);
  EXPECT_EQ(OpeningNumber(*disk), kCannotOpenDatabase);
  EXPECT_EQ(disk->Bytes(kPath), database);
}

TEST(Journal, ThatMeansNothingIsNoHindrance) {
  for (const std::string& left : {std::string(), std::string("text"), std::string(5000, 'j')}) {
    for (const Sharing sharing : {Sharing::Exclusive, Sharing::Shared}) {
      MemoryStorage storage;
      storage.Put(kPath, MakeDatabase(3));
      storage.Put(kJournal, left);
      {
        const auto pager = Pager::Open(storage, kPath, Opened(sharing));
        ASSERT_TRUE(pager.ok());
        PageTransaction transaction(*pager.value());
        ASSERT_TRUE(FillPage(*pager.value(), 2, 0x12).ok());
        ASSERT_TRUE(transaction.Commit().ok());
      }
      EXPECT_EQ(storage.Names(), std::vector<std::string>{std::string(kPath)});
    }
  }
}

TEST(Stamp, IsReadBackOrToldDamaged) {
  const Stamp stamp{.transaction = 0x1122334455667788, .records = 77};
  const StampBytes bytes = EncodeStamp(stamp);
  EXPECT_EQ(DecodeStamp(bytes).value(), stamp);
  EXPECT_EQ(DecodeStamp(StampBytes{}).value(), std::nullopt);
  EXPECT_EQ(DecodeStamp(ByteView(bytes).first(31)).value(), std::nullopt);
  for (std::size_t at = 8; at < kStampSize; ++at) {
    StampBytes damaged = bytes;
    damaged[at] ^= 0x10;
    EXPECT_EQ(DecodeStamp(damaged).number(), kCannotOpenDatabase) << at;
  }
}

TEST(Journal, HeaderIsReadBackOrRefused) {
  const JournalHeader header{.transaction = 1,
                             .database = 2,
                             .page_size = 4096,
                             .page_count = 3,
                             .unstamped = EncodeStamp({.transaction = 9, .records = 1})};
  auto bytes = EncodeJournalHeader(header);
  EXPECT_EQ(DecodeJournalHeader(bytes).value(), header);
  EXPECT_FALSE(DecodeJournalHeader(ByteView(bytes).first(511)).ok());
  for (std::size_t at = 0; at < 72; ++at) {
    auto damaged = bytes;
    damaged[at] ^= 0x01;
    EXPECT_FALSE(DecodeJournalHeader(damaged).ok()) << at;
  }
}

TEST(Checksum, DiffersForEveryBitAndPlace) {
  std::string bytes(41, 'c');
  const std::uint64_t sum = Checksum(AsBytes(bytes), 1);
  EXPECT_EQ(Checksum(AsBytes(bytes), 1), sum);
  EXPECT_NE(Checksum(AsBytes(bytes), 2), sum);
  EXPECT_NE(Checksum(AsBytes(bytes + '\0'), 1), sum);
  for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
    std::string changed = bytes;
    changed[bit / 8] = static_cast<char>(changed[bit / 8] ^ (1 << bit % 8));
    EXPECT_NE(Checksum(AsBytes(changed), 1), sum) << bit;
  }
}

TEST(DatabaseIdentity, StaysWithAnotherPassword) {
  std::string page = MakeDatabase(1);
  const std::uint64_t identity = DatabaseIdentity(AsBytes(page));
  page[0x42] ^= 0x20;
  page[0x69] ^= 0x20;
  EXPECT_EQ(DatabaseIdentity(AsBytes(page)), identity);
  page[0x72] ^= 0x20;
  EXPECT_NE(DatabaseIdentity(AsBytes(page)), identity);
}

}  // namespace
}  // namespace zent::jet::testing
