#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "scenarios/kill/FreshMachine.h"
#include "support/posix/ChildProcess.h"

namespace zent::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// The output of a run in which no file can grow beyond `bytes`, as on a full disk; its exit code
/// comes first.
std::string RunLimited(const FreshMachine& machine, rlim_t bytes,
                       const std::vector<std::string>& options = {}) {
  return RunInChild([&] {
    const struct rlimit limit = {.rlim_cur = bytes, .rlim_max = bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);
    std::vector<std::string> command = machine.Command();
    command.insert(command.end(), options.begin(), options.end());
    const ProgramEnd end = RunHostProgram(command, machine.folder().string());
    return std::to_string(end.exit_code) + "\n" + end.output;
  });
}

TEST(FullDisk, ACopyTellsItAndLeavesTheOldFile) {
  const FreshMachine given({R"(copy,Big.bin,$(apppath)\Korvo.exe)"});
  given.Put("package/Big.bin", std::string(300'000, 'b'));
  const MachineTree before = given.Tree();

  const std::string end = RunLimited(given, 100'000);

  EXPECT_THAT(end, AllOf(StartsWith("1\n"), HasSubstr("Error Copying Big.bin"),
                         HasSubstr("Description: Disk full"), HasSubstr("Number: 61")));
  EXPECT_EQ(CompareTrees(before, given.Tree()), "");
}

TEST(FullDisk, ARegistryWriteTellsItAndLeavesTheOldFile) {
  const FreshMachine given({R"(regw,HKLM|SOFTWARE\Zent\Korvo|Build,360)"});
  const MachineTree before = given.Tree();

  const std::string end = RunLimited(given, 100);

  EXPECT_THAT(end, HasSubstr("Error Writing into Registry"));
  EXPECT_EQ(CompareTrees(before, given.Tree()), "");
}

// A setting that cannot be stored is told in the record alone.
TEST(FullDisk, ASettingIsRecordedAsFailedAndTheOldFileStays) {
  const FreshMachine given(
      {R"(wrttoini,$(apppath)\NetUpd.ini,update,NOTE,)" + std::string(5000, 'n')});
  const MachineTree before = given.Tree();

  const std::string end = RunLimited(given, 1000, {"--detailed-exitcode"});

  EXPECT_THAT(end, StartsWith("10\n"));
  EXPECT_EQ(CompareTrees(before, given.Tree()), "");
}

}  // namespace
}  // namespace zent::testing
