#include <gtest/gtest.h>

#include "fakes/ui/FakeProcesses.h"

namespace zent::testing {
namespace {

TEST(FakeProcesses, RecordsStartsAndCountsTasks) {
  FakeProcesses processes;
  EXPECT_EQ(processes.Start({R"(C:\a.exe)", "/s", R"(C:\a.exe /s)"}).value_or(0), 4711U);
  EXPECT_EQ(processes.Start({R"(C:\b.exe)", "", R"(C:\b.exe )"}).value_or(0), 4712U);
  ASSERT_EQ(processes.launches.size(), 2U);
  EXPECT_EQ(processes.launches[0].arguments, "/s");
  EXPECT_EQ(processes.launches[1].command_line, R"(C:\b.exe )");
}

TEST(FakeProcesses, FailsForTheProgramsNamed) {
  FakeProcesses processes;
  processes.Fail(R"(c:\MISSING.exe)", StandardError(kFileNotFound));
  EXPECT_EQ(processes.Start({R"(C:\missing.exe)", "", ""}).number(), kFileNotFound);
  EXPECT_TRUE(processes.Start({R"(C:\other.exe)", "", ""}).ok());
  EXPECT_EQ(processes.launches.size(), 2U) << "also the one that failed";
}

}  // namespace
}  // namespace zent::testing
