#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <memory>

#include "jet/host/posix/PosixStorage.h"

/// Processes that are killed at a changing call which they make on real files.
namespace zent::jet::testing {

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

/// Lets a child of this process do `work` on files that kill it at the n-th changing call. True
/// when they did, false when it came to its end before; anything else is a failed expectation.
inline bool IsWorkKilledAt(int call, const std::function<Status(Storage&)>& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    KillingStorage storage(call);
    const Status done = work(storage);
    ::_exit(done.ok() ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
  return WIFSIGNALED(status);
}

}  // namespace zent::jet::testing
