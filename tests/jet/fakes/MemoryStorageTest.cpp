#include <gtest/gtest.h>

#include "jet/fakes/MemoryStorage.h"
#include "jet/fakes/StorageContract.h"

namespace zent::jet::testing {
namespace {

struct MemoryMachine {
  MemoryStorage storage;
  std::string Path(std::string_view name) const { return "C:\\" + std::string(name); }
  bool ReadOnlyTakesExclusiveLocks() const { return false; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, StorageContract, MemoryMachine);

struct LossCase {
  const char* what;
  PowerLoss::Kind kind;
  std::string disk;
};

const std::string kOld(2048, 'o');

std::string Blocks(std::string_view letters) {
  std::string bytes;
  for (const char letter : letters) bytes.append(512, letter);
  return bytes;
}

TEST(MemoryStorage, LosesOfWhatWasNotFlushedWhatItIsTold) {
  const LossCase cases[] = {
      {"all had reached the disk", PowerLoss::KeepsAll, Blocks("nnnn")},
      {"nothing had", PowerLoss::LosesAll, Blocks("oooo")},
      {"the write is torn", PowerLoss::KeepsFirst, Blocks("nnoo")},
      {"its end came first", PowerLoss::KeepsLast, Blocks("oonn")},
      {"every other block", PowerLoss::KeepsOdd, Blocks("onon")},
  };
  for (const LossCase& row : cases) {
    SCOPED_TRACE(row.what);
    MemoryStorage storage;
    storage.Put("a", kOld);
    Result<std::unique_ptr<StoredFile>> file = storage.Open("a", Sharing::Exclusive);
    ASSERT_TRUE(file.ok());
    ASSERT_TRUE(file.value()->WriteAt(0, AsBytes(Blocks("nnnn"))).ok());

    EXPECT_EQ(storage.AfterPowerLoss({.kind = row.kind})->Bytes("a"), row.disk);

    ASSERT_TRUE(file.value()->Flush().ok());
    EXPECT_EQ(storage.AfterPowerLoss({.kind = row.kind})->Bytes("a"), Blocks("nnnn"));
  }
}

TEST(MemoryStorage, LosesNamesUntilTheFolderIsFlushed) {
  MemoryStorage storage;
  storage.Put("old", "x");
  ASSERT_TRUE(storage.Create("new", Sharing::Shared, {}).ok());
  ASSERT_TRUE(storage.Delete("old").ok());
  const PowerLoss loss{.kind = PowerLoss::LosesAll};

  EXPECT_TRUE(storage.AfterPowerLoss(loss)->Has("old"));
  EXPECT_FALSE(storage.AfterPowerLoss(loss)->Has("new"));

  ASSERT_TRUE(storage.FlushFolder("new").ok());
  EXPECT_FALSE(storage.AfterPowerLoss(loss)->Has("old"));
  EXPECT_TRUE(storage.AfterPowerLoss(loss)->Has("new"));
}

TEST(MemoryStorage, FailsAtTheCallItIsTold) {
  MemoryStorage storage;
  Result<std::unique_ptr<StoredFile>> file = storage.Create("a", Sharing::Exclusive, {});
  ASSERT_TRUE(file.ok());
  storage.FailAt(2, kDeviceIoError);

  EXPECT_TRUE(file.value()->WriteAt(0, AsBytes("1")).ok());
  EXPECT_EQ(file.value()->WriteAt(1, AsBytes("2")).number(), kDeviceIoError);
  EXPECT_TRUE(file.value()->WriteAt(2, AsBytes("3")).ok());

  EXPECT_EQ(storage.Bytes("a"), std::string("1\0003", 3));
}

TEST(MemoryStorage, StopsForGood) {
  MemoryStorage storage;
  Result<std::unique_ptr<StoredFile>> file = storage.Create("a", Sharing::Exclusive, {});
  ASSERT_TRUE(file.ok());
  storage.StopAt(2);

  EXPECT_TRUE(file.value()->Flush().ok());
  EXPECT_EQ(file.value()->WriteAt(0, AsBytes("1")).number(), kDeviceIoError);
  EXPECT_TRUE(storage.stopped());
  EXPECT_EQ(file.value()->Flush().number(), kDeviceIoError);
  EXPECT_EQ(file.value()->Size().number(), kDeviceIoError);
  EXPECT_EQ(storage.Open("a", Sharing::ReadOnly).number(), kDeviceIoError);
}

TEST(MemoryStorage, HasNoMoreSpaceThanItIsGiven) {
  MemoryStorage storage;
  storage.Put("other", "12345");
  storage.LimitSpace(8);
  Result<std::unique_ptr<StoredFile>> file = storage.Create("a", Sharing::Exclusive, {});
  ASSERT_TRUE(file.ok());

  EXPECT_EQ(file.value()->WriteAt(0, AsBytes("abcd")).number(), kDiskFull);
  EXPECT_EQ(storage.Bytes("a"), "abc");
  EXPECT_TRUE(file.value()->WriteAt(0, AsBytes("xyz")).ok());
  EXPECT_EQ(file.value()->Resize(4).number(), kDiskFull);
  ASSERT_TRUE(storage.Delete("other").ok());
  EXPECT_TRUE(file.value()->Resize(8).ok());
}

TEST(MemoryStorage, ForbidsWritingWhenToldTo) {
  MemoryStorage storage;
  storage.Put("a", "x");
  storage.ForbidWriting();

  EXPECT_TRUE(storage.Open("a", Sharing::ReadOnly).ok());
  EXPECT_EQ(storage.Open("a", Sharing::Shared).number(), kPathFileAccess);
  EXPECT_EQ(storage.Create("b", Sharing::Shared, {}).number(), kPathFileAccess);
  EXPECT_EQ(storage.Delete("a").number(), kPathFileAccess);
}

}  // namespace
}  // namespace zent::jet::testing
