#include <gtest/gtest.h>
#include <sys/stat.h>

#include "jet/fakes/StorageContract.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/host/posix/PosixStorage.h"
#include "support/TempFolder.h"
#include "support/posix/ChildProcess.h"

namespace zent::jet::testing {
namespace {

struct PosixMachine {
  zent::testing::TempFolder folder;
  PosixStorage storage;
  std::string Path(std::string_view name) const { return (folder.path() / name).string(); }
  bool ReadOnlyTakesExclusiveLocks() const { return false; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Posix, StorageContract, PosixMachine);

TEST(PosixStorage, HoldsTheSameFileAsMemory) {
  PosixMachine machine;
  const std::vector<std::string> states = SampleStates();
  machine.folder.Put("Korvo.mdb", states.front());
  std::size_t committed = 0;

  const Status made =
      MakeChanges(machine.storage, machine.Path("Korvo.mdb"), SampleChanges().size(), committed);

  ASSERT_TRUE(made.ok()) << made.error().description;
  EXPECT_EQ(machine.folder.Get("Korvo.mdb"), states.back());
  EXPECT_FALSE(machine.storage.Exists(machine.Path("Korvo.mdb-journal")).value_or(true));
}

TEST(PosixStorage, IsInUseWhileAnyProgramHasTheFileOpen) {
  PosixMachine machine;
  const auto file = machine.folder.Put("Korvo.mdb", "x");
  {
    const zent::testing::HoldingProcess other(file, zent::testing::Hold::Reading);
    ASSERT_TRUE(other.ok());
    EXPECT_EQ(machine.storage.Open(file.string(), Sharing::Exclusive).number(), kPermissionDenied);
    EXPECT_TRUE(machine.storage.Open(file.string(), Sharing::Shared).ok());
  }
  EXPECT_TRUE(machine.storage.Open(file.string(), Sharing::Exclusive).ok());
}

TEST(PosixStorage, GivesANewFileTheRightsOfAnother) {
  PosixMachine machine;
  const auto file = machine.folder.Put("Korvo.mdb", "x");
  for (const mode_t rights : {mode_t{0600}, mode_t{0640}, mode_t{0666}}) {
    ASSERT_EQ(::chmod(file.c_str(), rights), 0);
    const std::string path = machine.Path("Korvo.ldb");
    ASSERT_TRUE(machine.storage.Create(path, Sharing::Shared, file.string()).ok());
    struct stat info = {};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, rights);
    ASSERT_TRUE(machine.storage.Delete(path).ok());
  }
}

struct NumberCase {
  const char* what;
  std::string name;
  Sharing sharing;
  int number;
};

TEST(PosixStorage, SaysWhyAFileCannotBeOpened) {
  PosixMachine machine;
  machine.folder.Put("file", "x");
  machine.folder.Put("folder/file", "x");
  const NumberCase cases[] = {
      {"missing file", "none", Sharing::Shared, kFileNotFound},
      {"missing folder", "none/file", Sharing::Shared, kPathNotFound},
      {"a file where a folder is wanted", "file/file", Sharing::ReadOnly, kPathNotFound},
      {"a folder, to be read", "folder", Sharing::ReadOnly, kPathFileAccess},
      {"a folder, to be written", "folder", Sharing::Shared, kPathFileAccess},
      {"too long a name", std::string(300, 'n'), Sharing::Shared, kBadFileName},
  };
  for (const NumberCase& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(machine.storage.Open(machine.Path(row.name), row.sharing).number(), row.number);
  }
}

TEST(PosixStorage, NeedsTheRightToWrite) {
  PosixMachine machine;
  const auto file = machine.folder.Put("Korvo.mdb", MakeDatabase(3));
  ASSERT_EQ(::chmod(file.c_str(), 0444), 0);
  ASSERT_EQ(::chmod(machine.folder.path().c_str(), 0555), 0);
  const std::string answer = zent::testing::RunAsOrdinaryUser([&]() -> std::string {
    const int shared =
        Pager::Open(machine.storage, file.string(), Opened(Sharing::Shared)).number();
    const auto reader = Pager::Open(machine.storage, file.string(), Opened(Sharing::ReadOnly));
    if (!reader.ok()) return reader.error().description;
    return std::to_string(shared) + " " + std::to_string(ByteOf(*reader.value(), 2)) + " " +
           std::to_string(reader.value()->Begin().number());
  });
  EXPECT_EQ(answer, "3051 15 3027");
  ASSERT_EQ(::chmod(machine.folder.path().c_str(), 0755), 0);
}

}  // namespace
}  // namespace zent::jet::testing
