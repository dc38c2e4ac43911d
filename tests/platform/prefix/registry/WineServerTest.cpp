#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "platform/prefix/registry/RegistryMachines.h"
#include "platform/prefix/registry/WineServer.h"

namespace zent {
namespace {

using namespace std::string_literals;
using testing::LockHolder;
using testing::MachineFolder;

bool IsRunning(const MachineFolder& machine) {
  return WineServer(machine.path(), machine.temp()).IsRunning();
}

TEST(WineServer, DoesNotRunWithoutAFolder) {
  const MachineFolder machine;
  EXPECT_FALSE(IsRunning(machine));
  EXPECT_FALSE(WineServer(machine.path(), machine.temp() + "/missing").IsRunning());
  EXPECT_FALSE(WineServer(machine.path() + "/missing", machine.temp()).IsRunning());
}

TEST(WineServer, RunsWhileItHoldsItsLock) {
  const MachineFolder machine;
  LockHolder server(machine.ServerFolder());
  EXPECT_TRUE(IsRunning(machine));
  server.End();
  EXPECT_TRUE(std::filesystem::exists(machine.ServerFolder() + "/lock"));
  EXPECT_FALSE(IsRunning(machine)) << "the file alone tells nothing";
}

TEST(WineServer, IsFoundThroughTheEntryOfThePrefix) {
  const MachineFolder machine;
  machine.Put("wineserver", "wine-Ab12Cd");
  LockHolder server(machine.temp() + "/wine-Ab12Cd/" + machine.ServerName());
  EXPECT_TRUE(IsRunning(machine));
  server.End();
  EXPECT_FALSE(IsRunning(machine));
}

TEST(WineServer, OfAnotherPrefixDoesNotCount) {
  const MachineFolder machine;
  const MachineFolder other;
  std::filesystem::create_directories(machine.ServerFolder());
  const std::string beside = std::filesystem::path(machine.ServerFolder()).parent_path();
  const LockHolder server(beside + "/" + other.ServerName());
  EXPECT_FALSE(IsRunning(machine));
}

TEST(WineServer, ALinkToThePrefixIsThePrefix) {
  const MachineFolder machine;
  const std::string link = machine.temp() + "/link";
  std::filesystem::create_directory_symlink(machine.path(), link);
  const LockHolder server(machine.ServerFolder());
  EXPECT_TRUE(WineServer(link, machine.temp()).IsRunning());
}

struct EntryCase {
  const char* what;
  std::string contents;
};

const EntryCase kHostileEntries[] = {
    {"empty", ""},
    {"the folder itself", "."},
    {"the folder above", ".."},
    {"a path upward", "../tmp/wine-x"},
    {"a path", "./wine-x"},
    {"a full path", "/tmp/wine-x"},
    {"a slash at the end", "wine-x/"},
    {"a NUL", "wine-x\0"s},
    {"a line end", "wine-x\n"},
    {"far too long", std::string(100000, 'x')},
    {"bytes", "\xff\xfe\0\x01"s},
};

TEST(WineServer, IgnoresAnEntryThatIsNoName) {
  const MachineFolder machine;
  const LockHolder server(machine.temp() + "/wine-x/" + machine.ServerName());
  for (const EntryCase& row : kHostileEntries) {
    SCOPED_TRACE(row.what);
    machine.Put("wineserver", row.contents);
    EXPECT_FALSE(IsRunning(machine));
  }
  machine.Put("wineserver", "wine-x");
  EXPECT_TRUE(IsRunning(machine));
}

TEST(WineServer, IgnoresAnEntryThatIsNoFile) {
  const MachineFolder machine;
  const std::string entry = machine.path() + "/wineserver";
  std::filesystem::create_directory(entry);
  EXPECT_FALSE(IsRunning(machine));
  std::filesystem::remove(entry);
  ASSERT_EQ(::mkfifo(entry.c_str(), 0600), 0);
  EXPECT_FALSE(IsRunning(machine));
  std::filesystem::remove(entry);
  machine.Put("elsewhere", "wine-x");
  std::filesystem::create_symlink("elsewhere", entry);
  const LockHolder server(machine.temp() + "/wine-x/" + machine.ServerName());
  EXPECT_FALSE(IsRunning(machine));
}

TEST(WineServer, FollowsNoLinksToTheLock) {
  const MachineFolder machine;
  const LockHolder other(machine.temp() + "/other");
  std::filesystem::create_directories(machine.ServerFolder());
  std::filesystem::create_symlink(machine.temp() + "/other/lock", machine.ServerFolder() + "/lock");
  EXPECT_FALSE(IsRunning(machine));
  std::filesystem::remove_all(machine.ServerFolder());
  std::filesystem::create_directory_symlink(machine.temp() + "/other", machine.ServerFolder());
  EXPECT_FALSE(IsRunning(machine));
}

TEST(WineServer, IgnoresAFolderOfAnotherUser) {
  if (::geteuid() != 0) return;  // Only root can make another's folder.
  const MachineFolder machine;
  const LockHolder server(machine.ServerFolder());
  ASSERT_TRUE(IsRunning(machine));
  ASSERT_EQ(::chown(machine.ServerFolder().c_str(), 65534, 65534), 0);
  EXPECT_FALSE(IsRunning(machine));
}

TEST(WineServer, MayRunWhereWeMayNotLook) {
  const MachineFolder machine;
  std::filesystem::create_directories(machine.ServerFolder());
  const std::filesystem::path outer = std::filesystem::path(machine.ServerFolder()).parent_path();
  for (const std::string& closed : {outer.string(), machine.ServerFolder()}) {
    ASSERT_EQ(::chmod(closed.c_str(), 0), 0);
    EXPECT_EQ(testing::RunInChild([&] {
                if (!testing::BecomeOrdinaryUser()) return 1;
                return IsRunning(machine) ? 0 : 2;
              }),
              0);
    ASSERT_EQ(::chmod(closed.c_str(), 0755), 0);
  }
}

}  // namespace
}  // namespace zent
