#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "jet/fakes/TestDatabase.h"
#include "jet/host/posix/PosixStorage.h"
#include "jet/storage/Journal.h"
#include "support/TempFolder.h"

/// A process is killed at every changing call that it makes on real files.
namespace zent::jet::testing {
namespace {

/// Kills this process at the n-th changing call; within a write, in the middle of it.
class KillingFile final : public StoredFile {
 public:
  KillingFile(std::unique_ptr<StoredFile> file, int& left) : file_(std::move(file)), left_(left) {}

  Result<std::uint64_t> Size() override { return file_->Size(); }
  Result<std::size_t> ReadAt(std::uint64_t offset, MutableBytes buffer) override {
    return file_->ReadAt(offset, buffer);
  }
  Status WriteAt(std::uint64_t offset, ByteView bytes) override {
    // A write is torn between blocks of 512 bytes at most: those are written in one piece.
    const std::uint64_t middle = (offset + bytes.size() / 2) / 512 * 512;
    if (left_ == 1 && middle > offset) {
      static_cast<void>(file_->WriteAt(offset, bytes.first(middle - offset)));
    }
    Count(left_);
    return file_->WriteAt(offset, bytes);
  }
  Status Resize(std::uint64_t size) override {
    Count(left_);
    return file_->Resize(size);
  }
  Status Flush() override {
    Count(left_);
    return {};  // of no account when only the process ends
  }
  Result<bool> TryLock(std::uint64_t offset, std::uint64_t length, bool exclusive) override {
    return file_->TryLock(offset, length, exclusive);
  }
  Status Unlock(std::uint64_t offset, std::uint64_t length) override {
    return file_->Unlock(offset, length);
  }

  static void Count(int& left) {
    if (--left == 0) ::kill(::getpid(), SIGKILL);
  }

 private:
  std::unique_ptr<StoredFile> file_;
  int& left_;
};

class KillingStorage final : public Storage {
 public:
  explicit KillingStorage(int call) : left_(call) {}

  Result<std::unique_ptr<StoredFile>> Open(std::string_view path, Sharing sharing) override {
    return Wrapped(files_.Open(path, sharing));
  }
  Result<std::unique_ptr<StoredFile>> Create(std::string_view path, Sharing sharing,
                                             std::string_view like) override {
    KillingFile::Count(left_);
    return Wrapped(files_.Create(path, sharing, like));
  }
  Status Delete(std::string_view path) override {
    KillingFile::Count(left_);
    return files_.Delete(path);
  }
  Result<bool> Exists(std::string_view path) override { return files_.Exists(path); }
  Status Rename(std::string_view path, std::string_view new_path) override {
    KillingFile::Count(left_);
    return files_.Rename(path, new_path);
  }
  Status FlushFolder(std::string_view /*path*/) override {
    KillingFile::Count(left_);
    return {};
  }
  void Pause(std::chrono::milliseconds time) override { files_.Pause(time); }

 private:
  Result<std::unique_ptr<StoredFile>> Wrapped(Result<std::unique_ptr<StoredFile>> file) {
    if (!file.ok()) return file;
    return std::unique_ptr<StoredFile>(new KillingFile(std::move(file.value()), left_));
  }

  PosixStorage files_;
  int left_;
};

/// Makes the sample changes in a process killed at the n-th call; true when it was.
bool IsKilledAt(int call, const std::string& path) {
  const pid_t child = ::fork();
  if (child == 0) {
    KillingStorage storage(call);
    std::size_t committed = 0;
    const Status made = MakeChanges(storage, path, SampleChanges().size(), committed);
    ::_exit(made.ok() ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
  return WIFSIGNALED(status);
}

TEST(Kill, AtEveryCallLeavesOneOfTheStates) {
  const std::vector<std::string> states = SampleStates();
  const zent::testing::TempFolder folder;
  std::size_t reached = 0;
  int kills = 0;
  for (int call = 1;; ++call) {
    SCOPED_TRACE(call);
    const std::string path = folder.Put("Korvo.mdb", states.front()).string();
    const bool killed = IsKilledAt(call, path);

    PosixStorage storage;
    ASSERT_TRUE(Pager::Open(storage, path, Opened(Sharing::Exclusive)).ok());
    const auto found = std::find(states.begin(), states.end(), folder.Get("Korvo.mdb"));
    ASSERT_NE(found, states.end());
    // A later kill never leaves an earlier state.
    const auto state = static_cast<std::size_t>(found - states.begin());
    ASSERT_GE(state, reached);
    reached = state;
    ASSERT_FALSE(storage.Exists(Journal::PathFor(path)).value_or(true));
    if (!killed) break;
    ++kills;
  }
  EXPECT_EQ(reached, SampleChanges().size());
  EXPECT_GT(kills, 40);
}

}  // namespace
}  // namespace zent::jet::testing
