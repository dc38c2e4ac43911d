#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "jet/fakes/StorageContract.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/host/win32/Win32Storage.h"
#include "support/TempFolder.h"

namespace zent::jet::testing {
namespace {

struct Win32Machine {
  zent::testing::TempFolder folder;
  Win32Storage storage;
  std::string Path(std::string_view name) const { return (folder.path() / name).string(); }
  bool ReadOnlyTakesExclusiveLocks() const { return true; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Win32, StorageContract, Win32Machine);

TEST(Win32Storage, HoldsTheSameFileAsMemory) {
  Win32Machine machine;
  const std::vector<std::string> states = SampleStates();
  machine.folder.Put("Korvo.mdb", states.front());
  std::size_t committed = 0;

  const Status made =
      MakeChanges(machine.storage, machine.Path("Korvo.mdb"), SampleChanges().size(), committed);

  ASSERT_TRUE(made.ok()) << made.error().description;
  EXPECT_EQ(machine.folder.Get("Korvo.mdb"), states.back());
  EXPECT_FALSE(machine.storage.Exists(machine.Path("Korvo.mdb-journal")).value_or(true));
}

TEST(Win32Storage, TakesNamesOfAnyAlphabet) {
  Win32Machine machine;
  const std::string path = machine.Path("a") + "\xD0\x96\xE6\x97\xA5.mdb";
  EXPECT_TRUE(machine.storage.Create(path, Sharing::Shared, {}).ok());
  EXPECT_TRUE(machine.storage.Exists(path).value_or(false));
  EXPECT_TRUE(machine.storage.Delete(path).ok());
  EXPECT_EQ(machine.storage.Delete(std::string("a\0b", 3)).number(), kBadFileName);
}

TEST(Win32Storage, NamesAMissingFolder) {
  Win32Machine machine;
  const std::string path = machine.Path("none") + "\\a.mdb";
  EXPECT_EQ(machine.storage.Open(path, Sharing::Shared).number(), kPathNotFound);
  EXPECT_EQ(machine.storage.Create(path, Sharing::Shared, {}).number(), kPathNotFound);
}

TEST(Win32Storage, DeletesNoFileThatIsOpen) {
  Win32Machine machine;
  const auto file = machine.storage.Create(machine.Path("a"), Sharing::Shared, {});
  ASSERT_TRUE(file.ok());
  EXPECT_EQ(machine.storage.Delete(machine.Path("a")).number(), kPermissionDenied);
}

// Where the name of a deleted file goes at once, there is nothing in the way.
TEST(Win32Storage, TakesAFileThatIsBeingDeletedForNoLackOfRights) {
  Win32Machine machine;
  machine.folder.Put("a", "x");
  const std::filesystem::path path = machine.folder.path() / "a";
  const HANDLE reader = CreateFileW(path.c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(reader, INVALID_HANDLE_VALUE);
  ASSERT_NE(DeleteFileW(path.c_str()), 0);
  EXPECT_NE(machine.storage.Open(machine.Path("a"), Sharing::Shared).number(), kPathFileAccess);
  EXPECT_NE(machine.storage.Create(machine.Path("a"), Sharing::Shared, {}).number(),
            kPathFileAccess);
  CloseHandle(reader);
}

/// Two pagers of one file, through the system's own sharing and locks.
TEST(Win32Storage, SharesADatabaseAmongPagers) {
  Win32Machine machine;
  machine.folder.Put("Korvo.mdb", MakeDatabase(10));
  const std::string path = machine.Path("Korvo.mdb");
  {
    const auto writer = Pager::Open(machine.storage, path, Opened(Sharing::Shared));
    const auto reader = Pager::Open(machine.storage, path, Opened(Sharing::ReadOnly));
    ASSERT_TRUE(writer.ok() && reader.ok());
    EXPECT_EQ(Pager::Open(machine.storage, path, Opened(Sharing::Exclusive)).number(), 3045);
    EXPECT_EQ(writer.value()->Users().value_or({}).size(), 2U);

    PageTransaction transaction(*writer.value());
    ASSERT_TRUE(transaction.status().ok()) << transaction.status().error().description;
    ASSERT_TRUE(FillPage(*writer.value(), 3, 0x99).ok());
    EXPECT_EQ(ByteOf(*reader.value(), 3), FirstByte(3));
    ASSERT_TRUE(transaction.Commit().ok());
    EXPECT_EQ(ByteOf(*reader.value(), 3), 0x99);
  }
  EXPECT_FALSE(machine.storage.Exists(LockFile::PathFor(path)).value_or(true));
}

}  // namespace
}  // namespace zent::jet::testing
