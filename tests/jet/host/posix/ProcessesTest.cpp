#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "jet/fakes/TestDatabase.h"
#include "jet/host/posix/PosixStorage.h"
#include "support/TempFolder.h"
#include "support/posix/ChildProcess.h"

/// Processes that share a database through real locks.
namespace zent::jet::testing {
namespace {

constexpr int kRounds = 60;

PagerOptions Patient(Sharing sharing) {
  PagerOptions options = Opened(sharing);
  options.lock_attempts = 60000;
  options.lock_pause = std::chrono::milliseconds(1);
  return options;
}

/// Adds one to a counter on page 1 and copies it to page 2, `kRounds` times, a transaction each.
int CountUp(const std::string& path) {
  PosixStorage storage;
  const auto pager = Pager::Open(storage, path, Patient(Sharing::Shared));
  if (!pager.ok()) return 1;
  for (int round = 0; round < kRounds; ++round) {
    PageTransaction transaction(*pager.value());
    if (!transaction.status().ok()) return 2;
    {
      Result<PageEdit> one = pager.value()->Edit(1);
      Result<PageEdit> two = pager.value()->Edit(2);
      if (!one.ok() || !two.ok()) return 3;
      const std::uint32_t count = LoadU32(one.value().bytes(), 0) + 1;
      StoreU32(one.value().bytes(), 0, count);
      StoreU32(two.value().bytes(), 0, count);
    }
    if (!transaction.Commit().ok()) return 4;
  }
  return 0;
}

/// Reads both pages over and over until the counter has its last value; fails when they differ.
int WatchUpTo(const std::string& path, std::uint32_t last) {
  PosixStorage storage;
  const auto pager = Pager::Open(storage, path, Patient(Sharing::ReadOnly));
  if (!pager.ok()) return 1;
  for (std::uint32_t seen = 0; seen < last;) {
    const ReadScope scope(*pager.value());
    if (!scope.status().ok()) return 2;
    const Result<PageView> one = pager.value()->Read(1);
    const Result<PageView> two = pager.value()->Read(2);
    if (!one.ok() || !two.ok()) return 3;
    const std::uint32_t now = LoadU32(one.value().bytes(), 0);
    if (LoadU32(two.value().bytes(), 0) != now) return 4;
    if (now < seen) return 5;
    seen = now;
  }
  return 0;
}

TEST(Processes, WriteOneAfterTheOtherAndReadCommittedStates) {
  const zent::testing::TempFolder folder;
  std::string start = MakeDatabase(5);
  start.replace(kPage, 4, 4, '\0').replace(2 * kPage, 4, 4, '\0');
  const std::string path = folder.Put("Korvo.mdb", start).string();
  constexpr int kWriters = 3;

  std::vector<pid_t> children;
  for (int child = 0; child <= kWriters; ++child) {
    children.push_back(::fork());
    if (children.back() == 0) {
      ::_exit(child == 0 ? WatchUpTo(path, kWriters * kRounds) : CountUp(path));
    }
  }
  for (const pid_t child : children) {
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
  }

  PosixStorage storage;
  const auto pager = Pager::Open(storage, path, Opened(Sharing::Exclusive));
  ASSERT_TRUE(pager.ok());
  EXPECT_EQ(LoadU32(pager.value()->Read(1).value().bytes(), 0), kWriters * kRounds);
  EXPECT_FALSE(storage.Exists(LockFile::PathFor(path)).value_or(true));
}

TEST(Processes, ThatAreKilledLeaveNoLocksBehind) {
  const zent::testing::TempFolder folder;
  const std::string path = folder.Put("Korvo.mdb", MakeDatabase(5)).string();
  int ready[2] = {};
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    PosixStorage storage;
    const auto pager = Pager::Open(storage, path, Opened(Sharing::Shared));
    const bool begun = pager.ok() && pager.value()->Begin().ok();
    if (begun && ::write(ready[1], "x", 1) == 1) ::pause();
    ::_exit(1);
  }
  char byte = 0;
  ASSERT_EQ(::read(ready[0], &byte, 1), 1);
  PosixStorage storage;
  {
    const auto other = Pager::Open(storage, path, Opened(Sharing::Shared));
    ASSERT_TRUE(other.ok());
    EXPECT_EQ(other.value()->Users().value_or({}).size(), 2U);
    EXPECT_EQ(other.value()->Begin().number(), 3050);
    EXPECT_EQ(Pager::Open(storage, path, Opened(Sharing::Exclusive)).number(), 3045);

    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_EQ(other.value()->Users().value_or({}).size(), 1U);
    EXPECT_TRUE(other.value()->Begin().ok());
  }
  EXPECT_TRUE(Pager::Open(storage, path, Opened(Sharing::Exclusive)).ok());
  ::close(ready[0]);
  ::close(ready[1]);
}

}  // namespace
}  // namespace zent::jet::testing
