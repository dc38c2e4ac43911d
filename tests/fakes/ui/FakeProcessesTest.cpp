#include <gtest/gtest.h>

#include "contracts/ProcessesContract.h"
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

class FakeSubject : public ProcessesSubject {
 public:
  FakeSubject() { processes_.Fail(Missing(), StandardError(kFileNotFound)); }
  Processes& processes() override { return processes_; }
  std::string Put(const std::string& name, const ProgramBehaviour& behaviour) override {
    std::string program = R"(C:\)" + name;
    const ProgramEnd end{behaviour.exit_code, behaviour.error_text};
    processes_.EndWith(program, end, behaviour.waits ? FakeProcesses::kNever : 0);
    if (behaviour.waits) waiting_ = end;
    return program;
  }
  std::string Missing() override { return R"(C:\missing.exe)"; }
  void Release(const std::string& program) override { processes_.EndWith(program, waiting_); }

 private:
  FakeProcesses processes_;
  ProgramEnd waiting_;
};

INSTANTIATE_TEST_SUITE_P(Fake, ProcessesContract, ::testing::Values([] {
                           return std::unique_ptr<ProcessesSubject>(new FakeSubject);
                         }));

TEST(FakeProcesses, CountsTheWaitsAndWhoIsLetGoOf) {
  FakeProcesses processes;
  processes.EndWith(R"(c:\SLOW.exe)", {.exit_code = 3}, 2);
  const Launch launch{R"(C:\slow.exe)", "", ""};
  {
    const auto started = processes.StartWaited(launch);
    ASSERT_TRUE(started.ok());
    const std::chrono::milliseconds time(1);
    EXPECT_FALSE(started.value()->Wait(time).value().has_value());
    EXPECT_FALSE(started.value()->Wait(time).value().has_value());
    EXPECT_EQ(started.value()->Wait(time).value()->exit_code, 3U);
  }
  EXPECT_EQ(processes.let_go, 0U);
  processes.EndWith(R"(C:\slow.exe)", {}, FakeProcesses::kNever);
  EXPECT_TRUE(processes.StartWaited(launch).ok());
  EXPECT_EQ(processes.let_go, 1U);
}

TEST(FakeProcesses, FailsToWaitForTheProgramsNamed) {
  FakeProcesses processes;
  processes.FailWaits(R"(C:\a.exe)", StandardError(kDeviceIoError));
  const auto started = processes.StartWaited({R"(C:\a.exe)", "", ""});
  ASSERT_TRUE(started.ok());
  EXPECT_EQ(started.value()->Wait(std::chrono::milliseconds(1)).number(), kDeviceIoError);
}

TEST(FakeProcesses, TellsOfEachStart) {
  FakeProcesses processes;
  int starts = 0;
  processes.on_launch = [&] { ++starts; };
  processes.Fail(R"(C:\a.exe)", StandardError(kFileNotFound));
  EXPECT_FALSE(processes.Start({R"(C:\a.exe)", "", ""}).ok());
  EXPECT_TRUE(processes.Start({R"(C:\b.exe)", "", ""}).ok());
  EXPECT_TRUE(processes.StartWaited({R"(C:\b.exe)", "", ""}).ok());
  EXPECT_EQ(starts, 2);
}

}  // namespace
}  // namespace zent::testing
