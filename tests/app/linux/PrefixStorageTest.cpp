#include <gtest/gtest.h>
#include <sys/stat.h>

#include "app/linux/PrefixStorage.h"
#include "jet/fakes/StorageContract.h"
#include "platform/prefix/files/TestMachine.h"

namespace zent {
namespace {

struct PrefixStorageMachine {
  testing::TestMachine machine;
  PrefixStorage storage{machine.Open()};
  std::string Path(std::string_view name) const { return "C:\\" + std::string(name); }
  bool ReadOnlyTakesExclusiveLocks() const { return false; }
};

}  // namespace
}  // namespace zent

namespace zent::jet::testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Prefix, StorageContract, PrefixStorageMachine);
}  // namespace zent::jet::testing

namespace zent {
namespace {

TEST(PrefixStorage, FindsAFileInAnyCaseAndPutsItsCompanionsBesideIt) {
  PrefixStorageMachine given;
  given.machine.Put("Data/Korvo.mdb", "pages");
  EXPECT_TRUE(given.storage.Exists(R"(c:\DATA\korvo.MDB)").value_or(false));
  EXPECT_TRUE(given.storage.Open(R"(c:\DATA\korvo.MDB)", jet::Sharing::Shared).ok());
  ASSERT_TRUE(given.storage.Create(R"(c:\DATA\korvo.ldb)", jet::Sharing::Shared, {}).ok());
  EXPECT_EQ(given.machine.NamesIn("Data"), (std::vector<std::string>{"Korvo.mdb", "korvo.ldb"}));
  ASSERT_TRUE(given.storage.Rename(R"(C:\Data\KORVO.LDB)", R"(C:\Data\korvo.mdb)").ok());
  EXPECT_EQ(given.machine.NamesIn("Data"), std::vector<std::string>{"Korvo.mdb"});
}

TEST(PrefixStorage, NeverLeavesTheDrive) {
  PrefixStorageMachine given;
  testing::TempFolder outside;
  outside.Put("Korvo.mdb", "theirs");
  given.machine.Link("away", outside.path());
  given.machine.Link("Away.mdb", outside.path() / "Korvo.mdb");
  EXPECT_FALSE(given.storage.Open(R"(C:\away\Korvo.mdb)", jet::Sharing::ReadOnly).ok());
  EXPECT_FALSE(given.storage.Open(R"(C:\Away.mdb)", jet::Sharing::ReadOnly).ok());
  EXPECT_FALSE(given.storage.Create(R"(C:\away\New.mdb)", jet::Sharing::Shared, {}).ok());
  EXPECT_FALSE(given.storage.Delete(R"(C:\away\Korvo.mdb)").ok());
  EXPECT_EQ(outside.Get("Korvo.mdb"), "theirs");
}

// Also for the administrator, whom the system lets write everything.
TEST(PrefixStorage, OpensAReadOnlyFileToBeReadAlone) {
  PrefixStorageMachine given;
  const auto file = given.machine.Put("Korvo.mdb", "pages");
  ASSERT_EQ(::chmod(file.c_str(), 0444), 0);
  EXPECT_EQ(given.storage.Open(R"(C:\Korvo.mdb)", jet::Sharing::Shared).number(), kPathFileAccess);
  EXPECT_EQ(given.storage.Open(R"(C:\Korvo.mdb)", jet::Sharing::Exclusive).number(),
            kPathFileAccess);
  EXPECT_TRUE(given.storage.Open(R"(C:\Korvo.mdb)", jet::Sharing::ReadOnly).ok());
}

}  // namespace
}  // namespace zent
