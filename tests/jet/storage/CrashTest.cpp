#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "jet/fakes/MemoryStorage.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/storage/Journal.h"
#include "jet/storage/Pager.h"

/// The machine stops at every changing call of several transactions, and makes of what was not
/// flushed whatever it can: the file is as before or as after the transaction, to the byte.
namespace zent::jet::testing {
namespace {

const std::vector<PowerLoss>& Losses() {
  static const std::vector<PowerLoss> losses = {
      {PowerLoss::KeepsAll, 0},    {PowerLoss::LosesAll, 0},    {PowerLoss::KeepsFirst, 0},
      {PowerLoss::KeepsLast, 0},   {PowerLoss::KeepsOdd, 0},    {PowerLoss::KeepsRandom, 1},
      {PowerLoss::KeepsRandom, 2}, {PowerLoss::KeepsRandom, 3}, {PowerLoss::KeepsRandom, 4},
  };
  return losses;
}

/// The file after opening and closing it on `disk`.
std::string Recovered(MemoryStorage& disk, Sharing sharing = Sharing::Exclusive) {
  const Result<std::unique_ptr<Pager>> pager = Pager::Open(disk, kPath, Opened(sharing));
  if (!pager.ok()) return "cannot be opened: " + pager.error().description;
  return disk.Bytes(kPath);
}

bool IsEither(const std::string& bytes, const std::string& one, const std::string& other) {
  return bytes == one || bytes == other;
}

/// A machine that stopped at changing call `call` of the sample changes; `committed` counts those
/// that were told to be.
std::unique_ptr<MemoryStorage> StoppedAt(int call, const std::string& start,
                                         std::size_t& committed) {
  auto storage = std::make_unique<MemoryStorage>();
  storage->Put(kPath, start);
  storage->StopAt(call);
  static_cast<void>(MakeChanges(*storage, kPath, SampleChanges().size(), committed));
  return storage;
}

TEST(Crash, LeavesTheFileAsBeforeOrAsAfter) {
  const std::vector<std::string> states = SampleStates();
  int stops = 0;
  for (int call = 1;; ++call) {
    std::size_t committed = 0;
    const auto machine = StoppedAt(call, states.front(), committed);
    if (!machine->stopped()) break;
    ++stops;
    for (const PowerLoss& loss : Losses()) {
      SCOPED_TRACE(::testing::Message() << "call " << call << ", loss " << int{loss.kind} << " of "
                                        << loss.seed << ", after " << committed << " commits");
      const auto disk = machine->AfterPowerLoss(loss);
      const std::string after = Recovered(*disk);
      const std::size_t next = std::min(committed + 1, states.size() - 1);
      ASSERT_TRUE(IsEither(after, states[committed], states[next])) << after.substr(0, 200);
      ASSERT_FALSE(disk->Has(Journal::PathFor(kPath)));
    }
  }
  // Each change takes a journal, a stamp, pages and flushes of each.
  EXPECT_GT(stops, 5 * 8);
}

TEST(Crash, IsUndoneBySharedAndReadingOpenersAsWell) {
  const std::vector<std::string> states = SampleStates();
  for (int call = 1;; ++call) {
    std::size_t committed = 0;
    const auto machine = StoppedAt(call, states.front(), committed);
    if (!machine->stopped()) break;
    for (const Sharing sharing : {Sharing::Shared, Sharing::ReadOnly}) {
      SCOPED_TRACE(::testing::Message() << "call " << call);
      const auto disk = machine->AfterPowerLoss({PowerLoss::KeepsRandom, 5});
      const std::string after = Recovered(*disk, sharing);
      const std::size_t next = std::min(committed + 1, states.size() - 1);
      ASSERT_TRUE(IsEither(after, states[committed], states[next])) << after.substr(0, 200);
    }
  }
}

TEST(Crash, DuringTheRecoveryIsRecoveredAsWell) {
  const std::vector<std::string> states = SampleStates();
  int stops = 0;
  for (int call = 1;; call += 3) {
    std::size_t committed = 0;
    const auto machine = StoppedAt(call, states.front(), committed);
    if (!machine->stopped()) break;
    const std::string& before = states[committed];
    const std::string& after = states[std::min(committed + 1, states.size() - 1)];
    for (int again = 1;; ++again) {
      const auto disk = machine->AfterPowerLoss({PowerLoss::KeepsAll, 0});
      disk->StopAt(again);
      static_cast<void>(Recovered(*disk));
      if (!disk->stopped()) break;
      ++stops;
      for (const PowerLoss& loss : Losses()) {
        SCOPED_TRACE(::testing::Message() << "call " << call << ", then " << again << ", loss "
                                          << int{loss.kind} << " of " << loss.seed);
        const std::string found = Recovered(*disk->AfterPowerLoss(loss));
        ASSERT_TRUE(IsEither(found, before, after)) << found.substr(0, 200);
      }
    }
  }
  EXPECT_GT(stops, 50);
}

TEST(Crash, OfAnEncryptedFileIsUndoneToTheByte) {
  const std::string before = MakeDatabase(6, 0x12345678);
  for (int call = 1;; ++call) {
    SCOPED_TRACE(call);
    MemoryStorage storage;
    storage.Put(kPath, before);
    storage.StopAt(call);
    {
      const auto pager = Pager::Open(storage, kPath, Opened(Sharing::Exclusive));
      ASSERT_TRUE(pager.ok());
      PageTransaction transaction(*pager.value());
      ASSERT_TRUE(transaction.status().ok());
      const bool filled = FillPage(*pager.value(), 2, 0x77).ok();
      if (filled && transaction.Commit().ok()) break;
    }
    const auto disk = storage.AfterPowerLoss({PowerLoss::KeepsFirst, 0});
    const std::string found = Recovered(*disk);
    if (found == before) continue;
    const auto pager = Pager::Open(*disk, kPath, Opened(Sharing::Exclusive));
    ASSERT_TRUE(pager.ok());
    EXPECT_EQ(ByteOf(*pager.value(), 2), 0x77);
    EXPECT_EQ(ByteOf(*pager.value(), 3), FirstByte(3));
  }
}

}  // namespace
}  // namespace zent::jet::testing
