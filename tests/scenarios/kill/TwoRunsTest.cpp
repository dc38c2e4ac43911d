#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <thread>

#include "scenarios/kill/FreshMachine.h"

namespace zent::testing {
namespace {

using ::testing::HasSubstr;
using namespace std::chrono_literals;

bool ComesUp(const std::filesystem::path& file) {
  for (int i = 0; i < 500; ++i) {
    if (std::filesystem::exists(file)) return true;
    std::this_thread::sleep_for(20ms);
  }
  return false;
}

TEST(TwoRuns, TheSecondIsSentAwayAndChangesNothing) {
  const FreshMachine given({R"(wrttoini,$(apppath)\First.ini,Section,Key,at work)", "wait,3",
                            R"(wrttoini,$(apppath)\Last.ini,Section,Key,done)"});
  std::future<ProgramEnd> first = std::async(std::launch::async, [&given] { return given.Run(); });
  const std::filesystem::path app = given.folder() / "machine/drive_c/Program Files/Zent";
  ASSERT_TRUE(ComesUp(app / "First.ini"));

  const MachineTree before = given.Tree();
  const ProgramEnd second = given.Run();
  const MachineTree after = given.Tree();

  EXPECT_EQ(second.exit_code, 75);
  EXPECT_THAT(second.output, HasSubstr("another run is at work"));
  EXPECT_EQ(CompareTrees(before, after), "");
  EXPECT_EQ(after.count("drive_c/Program Files/Zent/Last.ini"), 0U);  // the first was at work
  EXPECT_EQ(first.get().exit_code, 0);
  EXPECT_TRUE(std::filesystem::exists(app / "Last.ini"));
}

}  // namespace
}  // namespace zent::testing
