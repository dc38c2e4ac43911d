#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "platform/prefix/files/TestMachine.h"
#include "support/posix/ChildProcess.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::TestMachine;

/// Makes every write of this process beyond `bytes` of a file fail, as on a full disk.
void LimitFiles(rlim_t bytes) {
  const struct rlimit limit = {.rlim_cur = bytes, .rlim_max = bytes};
  ::setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, SIG_IGN);
}

TEST(HalfWay, AWriteThatFailsLeavesTheOldFile) {
  TestMachine machine;
  machine.Put("a.txt", "old");
  FileSystem& files = machine.Open();
  const std::string number = testing::RunInChild([&] {
    LimitFiles(1000);
    return std::to_string(files.Write(R"(C:\a.txt)", std::string(5000, 'n')).number());
  });
  EXPECT_EQ(number, std::to_string(kDiskFull));
  EXPECT_EQ(machine.Get("a.txt"), "old");
  EXPECT_THAT(machine.NamesIn(""), ElementsAre("a.txt"));
}

TEST(HalfWay, ACopyThatFailsLeavesTheOldTarget) {
  TestMachine machine;
  machine.Put("a.txt", "old");
  machine.Put("source.txt", std::string(5'000'000, 's'));
  FileSystem& files = machine.Open();
  const std::string number = testing::RunInChild([&] {
    LimitFiles(2'000'000);
    return std::to_string(files.Copy(R"(C:\source.txt)", R"(C:\a.txt)").number());
  });
  EXPECT_EQ(number, std::to_string(kDiskFull));
  EXPECT_EQ(machine.Get("a.txt"), "old");
  EXPECT_THAT(machine.NamesIn(""), ElementsAre("a.txt", "source.txt"));
}

TEST(HalfWay, AMoveToAnotherDriveThatFailsLeavesTheOldFile) {
  TestMachine machine;
  const testing::TempFolder other;
  std::filesystem::create_symlink(other.path(), machine.path() / "dosdevices/e:");
  machine.Put("source.txt", std::string(5000, 's'));
  FileSystem& files = machine.Open();
  const std::string number = testing::RunInChild([&] {
    LimitFiles(1000);
    return std::to_string(files.Move(R"(C:\source.txt)", R"(E:\a.txt)").number());
  });
  EXPECT_EQ(number, std::to_string(kDiskFull));
  EXPECT_EQ(machine.Get("source.txt").size(), 5000U);
  EXPECT_TRUE(std::filesystem::is_empty(other.path()));
}

TEST(HalfWay, AFolderWithoutRightsIsRefusedAndStaysAsItWas) {
  TestMachine machine;
  machine.Put("dir/a.txt", "old");
  ::chmod(machine.C("dir").c_str(), 0555);
  testing::GiveToOrdinaryUser(machine.path());
  FileSystem& files = machine.Open();
  const std::string numbers = testing::RunAsOrdinaryUser([&] {
    std::string text;
    for (const Status& status :
         {files.Write(R"(C:\dir\a.txt)", "new"), files.Write(R"(C:\dir\b.txt)", "new"),
          files.Delete(R"(C:\dir\a.txt)"), files.CreateFolder(R"(C:\dir\sub)"),
          files.Move(R"(C:\dir\a.txt)", R"(C:\b.txt)"),
          files.Copy(R"(C:\dir\a.txt)", R"(C:\dir\b.txt)")}) {
      text += std::to_string(status.number()) + " ";
    }
    return text;
  });
  EXPECT_EQ(numbers, "75 75 75 75 75 75 ");
  EXPECT_EQ(machine.Get("dir/a.txt"), "old");
}

TEST(HalfWay, AnOrdinaryUserStoresAndCopiesEveryAttribute) {
  TestMachine machine;
  machine.Put("a.txt", "a");
  testing::GiveToOrdinaryUser(machine.path());
  FileSystem& files = machine.Open();
  const std::string attributes = testing::RunAsOrdinaryUser([&] {
    std::string text = std::to_string(files.SetAttributes(R"(C:\a.txt)", 0x27).number());
    text += " " + std::to_string(files.Attributes(R"(C:\a.txt)").value_or(0));
    text += " " + std::to_string(files.Copy(R"(C:\a.txt)", R"(C:\b.txt)").number());
    text += " " + std::to_string(files.Attributes(R"(C:\b.txt)").value_or(0));
    text += " " + std::to_string(files.SetAttributes(R"(C:\a.txt)", 0x1).number());
    text += " " + std::to_string(files.Attributes(R"(C:\a.txt)").value_or(0));
    return text;
  });
  EXPECT_EQ(attributes, "0 39 0 39 0 33");
}

}  // namespace
}  // namespace zent
