#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "jet/fakes/MemoryStorage.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/format/JetErrors.h"
#include "jet/storage/LockFile.h"

namespace zent::jet::testing {
namespace {

struct PathCase {
  const char* what;
  const char* database;
  const char* lock_file;
};

TEST(LockFile, StandsBesideTheDatabase) {
  constexpr PathCase kCases[] = {
      {"the usual ending", "C:\\Data\\Korvo.mdb", "C:\\Data\\Korvo.ldb"},
      {"in capitals", "C:\\DATA\\KORVO.MDB", "C:\\DATA\\KORVO.ldb"},
      {"another ending", "/d/korvo.dat", "/d/korvo.dat.ldb"},
      {"no ending", "korvo", "korvo.ldb"},
      {"nothing but the ending", ".mdb", ".ldb"},
  };
  for (const PathCase& row : kCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(LockFile::PathFor(row.database), row.lock_file);
  }
}

Result<std::unique_ptr<LockFile>> EnterAs(Storage& storage, std::string computer,
                                          std::string name = "Admin") {
  return LockFile::Enter(storage, "a.mdb",
                         {.computer = std::move(computer), .name = std::move(name)});
}

TEST(LockFile, HoldsAnEntryOf64Bytes) {
  MemoryStorage storage;
  const auto one = EnterAs(storage, "ANNA");
  const auto two = EnterAs(storage, "M\xC3\x9CLLER", "J\xC3\xBCrgen");
  ASSERT_TRUE(one.ok() && two.ok());
  std::string expected(128, '\0');
  expected.replace(0, 4, "ANNA").replace(32, 5, "Admin");
  expected.replace(64, 6, "M\xDCLLER").replace(96, 6, "J\xFCrgen");
  EXPECT_EQ(storage.Bytes("a.ldb"), expected);
  EXPECT_EQ(two.value()->slot(), 2);
  EXPECT_EQ(LockFile::UsersOf(storage, "a.mdb").value_or({})[1].name, "J\xC3\xBCrgen");
}

TEST(LockFile, CutsNamesThatAreTooLong) {
  MemoryStorage storage;
  const auto one = EnterAs(storage, std::string(40, 'x'), std::string(32, 'y'));
  ASSERT_TRUE(one.ok());
  const std::vector<User> users = one.value()->Users().value_or({});
  ASSERT_EQ(users.size(), 1U);
  EXPECT_EQ(users[0].computer, std::string(31, 'x'));
  EXPECT_EQ(users[0].name, std::string(31, 'y'));
}

TEST(LockFile, IsTakenOverWhenLeftBehind) {
  MemoryStorage storage;
  storage.Put("a.ldb", std::string(192, 'z'));
  EXPECT_TRUE(LockFile::UsersOf(storage, "a.mdb").value_or({{}}).empty());
  {
    const auto one = EnterAs(storage, "ANNA");
    ASSERT_TRUE(one.ok());
    EXPECT_EQ(one.value()->slot(), 1);
    EXPECT_EQ(one.value()->Users().value_or({}).size(), 1U);
  }
  EXPECT_FALSE(storage.Has("a.ldb"));
}

TEST(LockFile, HasRoomFor255) {
  MemoryStorage storage;
  std::vector<std::unique_ptr<LockFile>> users;
  for (int slot = 1; slot <= 255; ++slot) {
    auto user = EnterAs(storage, "PC" + std::to_string(slot));
    ASSERT_TRUE(user.ok());
    ASSERT_EQ(user.value()->slot(), slot);
    users.push_back(std::move(user.value()));
  }
  EXPECT_EQ(EnterAs(storage, "LATE").number(), kDatabaseInUse);
  const std::vector<User> all = users[100]->Users().value_or({});
  ASSERT_EQ(all.size(), 255U);
  EXPECT_EQ(all[254].computer, "PC255");
  EXPECT_FALSE(users[0]->HasForeignUser().value_or(true));

  users.erase(users.begin() + 41);
  const auto next = EnterAs(storage, "NEXT");
  ASSERT_TRUE(next.ok());
  EXPECT_EQ(next.value()->slot(), 42);
}

TEST(LockFile, HasNoUsersWhereThereIsNone) {
  MemoryStorage storage;
  EXPECT_TRUE(LockFile::UsersOf(storage, "a.mdb").value_or({{}}).empty());
  EXPECT_TRUE(storage.Names().empty());
}

TEST(LockFile, StaysWhileAProgramOfAnotherKindIsThere) {
  MemoryStorage storage;
  std::unique_ptr<StoredFile> other;
  {
    const auto one = EnterAs(storage, "ANNA");
    ASSERT_TRUE(one.ok());
    other = std::move(storage.Open("a.ldb", Sharing::Shared).value());
    ASSERT_TRUE(other->TryLock(0x10000009, 1, true).value_or(false));
    EXPECT_TRUE(one.value()->HasForeignUser().value_or(false));
  }
  EXPECT_TRUE(storage.Has("a.ldb"));
}

TEST(LockFile, TakesNoOneForAProgramOfAnotherKindWhoLeaves) {
  MemoryStorage storage;
  const auto one = EnterAs(storage, "ANNA");
  ASSERT_TRUE(one.ok());
  // Who leaves holds all other slots, to see whether he is alone.
  const auto leaving = storage.Open("a.ldb", Sharing::Shared);
  ASSERT_TRUE(leaving.ok());
  ASSERT_TRUE(leaving.value()->TryLock(0x10000002, 254, true).value_or(false));
  int looks = 0;
  storage.on_pause = [&] {
    if (++looks == 3) {
      EXPECT_TRUE(leaving.value()->Unlock(0x10000002, 254).ok());
    }
  };
  EXPECT_FALSE(one.value()->HasForeignUser().value_or(true));
  EXPECT_EQ(looks, 3);
}

TEST(LockFile, DoesNotAddUpThoseWhoLeaveOneAfterTheOther) {
  MemoryStorage storage;
  const auto one = EnterAs(storage, "ANNA");
  const auto leaving = storage.Open("a.ldb", Sharing::Shared);
  ASSERT_TRUE(one.ok() && leaving.ok());
  std::uint64_t slot = 0x10000002;
  ASSERT_TRUE(leaving.value()->TryLock(slot, 1, true).value_or(false));
  storage.on_pause = [&] {
    EXPECT_TRUE(leaving.value()->Unlock(slot, 1).ok());
    EXPECT_TRUE(leaving.value()->TryLock(++slot, 1, true).value_or(false));
  };
  EXPECT_FALSE(one.value()->HasForeignUser().value_or(true));
}

/// Files of a machine on which something happens as soon as one was opened.
class WatchedStorage final : public Storage {
 public:
  explicit WatchedStorage(Storage& files) : files_(files) {}

  std::function<void()> on_opened;  ///< called once

  Result<std::unique_ptr<StoredFile>> Open(std::string_view path, Sharing sharing) override {
    Result<std::unique_ptr<StoredFile>> file = files_.Open(path, sharing);
    if (on_opened) std::exchange(on_opened, nullptr)();
    return file;
  }
  Result<std::unique_ptr<StoredFile>> Create(std::string_view path, Sharing sharing,
                                             std::string_view like) override {
    return files_.Create(path, sharing, like);
  }
  Status Delete(std::string_view path) override { return files_.Delete(path); }
  Result<bool> Exists(std::string_view path) override { return files_.Exists(path); }
  Status Rename(std::string_view path, std::string_view new_path) override {
    return files_.Rename(path, new_path);
  }
  Status FlushFolder(std::string_view path) override { return files_.FlushFolder(path); }
  void Pause(std::chrono::milliseconds time) override { files_.Pause(time); }

 private:
  Storage& files_;
};

// The last user deletes the file while we enter it, and the next one makes another.
TEST(LockFile, IsEnteredWhereOthersFindIt) {
  MemoryStorage storage;
  storage.Put("a.ldb", "");
  std::unique_ptr<LockFile> other;
  WatchedStorage watched(storage);
  watched.on_opened = [&] {
    ASSERT_TRUE(storage.Delete("a.ldb").ok());
    auto entered = EnterAs(storage, "ANNA");
    ASSERT_TRUE(entered.ok());
    other = std::move(entered.value());
  };
  const auto ours = EnterAs(watched, "ANNA");
  ASSERT_TRUE(ours.ok());
  ASSERT_NE(other, nullptr);
  EXPECT_EQ(other->slot(), 1);
  EXPECT_EQ(ours.value()->slot(), 2);
  EXPECT_EQ(other->Users().value_or({}).size(), 2U);
}

TEST(LockFile, SaysWhyItCannotBeMade) {
  MemoryStorage storage;
  storage.ForbidWriting();
  EXPECT_EQ(EnterAs(storage, "ANNA").number(), kCannotOpenFile);
}

}  // namespace
}  // namespace zent::jet::testing
