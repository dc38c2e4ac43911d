#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dataupdate/customisation/CustomisationProgram.h"
#include "fakes/run/RunBuilder.h"

namespace zent {
namespace {

using std::chrono::milliseconds;
using ::testing::Each;
using testing::FakeProcesses;
using ::testing::HasSubstr;
using testing::RunBuilder;
using ::testing::SizeIs;

constexpr const char* kProgram = R"(C:\Korvo\ZentCustomize.exe)";

const CustomisationTask kTask = {.database = R"(D:\Data\Korvo.mdb)",
                                 .customize_folder = R"(D:\Data\Customize\)",
                                 .temp_folder = R"(C:\Korvo\Temp\)"};

Result<CustomisationOutcome> Apply(RunBuilder& given, const CustomisationTask& task = kTask) {
  return CustomisationProgram(given.run).Apply(task);
}

struct ArgumentsCase {
  const char* what;
  CustomisationTask task;
  const char* arguments;
};

const ArgumentsCase kArgumentsCases[] = {
    {"three plain paths", kTask, R"("D:\Data\Korvo.mdb" "D:\Data\Customize" "C:\Korvo\Temp")"},
    {"blanks",
     {R"(D:\My Data\My Korvo.mdb)", R"(D:\My Data\Customize\)", R"(C:\Program Files\Zent\Temp\)"},
     R"("D:\My Data\My Korvo.mdb" "D:\My Data\Customize" "C:\Program Files\Zent\Temp")"},
    {"a quote puts no argument in",
     {R"(D:\a" "C:\b.mdb)", R"(D:\Customize\)", R"(C:\Temp\)"},
     R"("D:\a\" \"C:\b.mdb" "D:\Customize" "C:\Temp")"},
    {"a folder as the database",
     {R"(D:\Data\)", R"(D:\x\)", R"(C:\y\)"},
     R"("D:\Data\\" "D:\x" "C:\y")"},
    {"a drive keeps its backslash", {"D:\\a.mdb", "D:\\", "C:\\"}, R"("D:\a.mdb" "D:\\" "C:\\")"},
    {"a connect text",
     {"DSN=Korvo;UID=sa;", R"(D:\Customize\)", R"(C:\Temp\)"},
     R"("DSN=Korvo;UID=sa;" "D:\Customize" "C:\Temp")"},
};

TEST(CustomisationProgram, GetsEachPlaceAsOneArgument) {
  for (const ArgumentsCase& row : kArgumentsCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    EXPECT_TRUE(Apply(given, row.task).ok());
    ASSERT_THAT(given.machine.processes.launches, SizeIs(1));
    EXPECT_EQ(given.machine.processes.launches[0].program, kProgram);
    EXPECT_EQ(given.machine.processes.launches[0].arguments, row.arguments);
  }
}

TEST(CustomisationProgram, LiesInTheApplicationsFolder) {
  RunBuilder given;
  given.run.state.AppPath = R"(C:\Program Files\Zent "x"\)";
  EXPECT_TRUE(Apply(given).ok());
  const Launch& launch = given.machine.processes.launches.at(0);
  EXPECT_EQ(launch.program, R"(C:\Program Files\Zent "x"\ZentCustomize.exe)");
  EXPECT_THAT(launch.command_line,
              HasSubstr(R"("C:\Program Files\Zent \"x\"\ZentCustomize.exe" "D:\Data\Korvo.mdb")"));
}

struct EndCase {
  const char* what;
  ProgramEnd end;
  bool is_applied;
  int number;               ///< 0: no error
  const char* description;  ///< of the error
};

const EndCase kEndCases[] = {
    {"done", {0, ""}, true, 0, ""},
    {"done, with a complaint", {0, "slow disk"}, true, 0, ""},
    {"the database cannot be opened", {2, "in use"}, false, 0, ""},
    {"an error", {3044, "Not a valid path"}, false, 3044, "Not a valid path"},
    {"several lines, as the window breaks them",
     {1, "First\nsecond\r\nthird\n\n"},
     false,
     1,
     "First\r\nsecond\r\nthird"},
    {"blank ends go", {1, "\r\n  \tWhy  \r\n"}, false, 1, "Why"},
    {"so do controls", {1, std::string("a\0b\x1B[1mc\a", 9)}, false, 1, "ab[1mc"},
    {"letters stay", {1, "M\xC3\xBCller"}, false, 1, "M\xC3\xBCller"},
    {"a password goes",
     {1, "cannot log in with UID=sa;PWD=secret; there"},
     false,
     1,
     "cannot log in with UID=sa;*********** there"},
    {"blanks alone say nothing", {7, " \n"}, false, 7, "ZentCustomize.exe has ended with an error"},
    {"a crash", {0xC0000005U, ""}, false, -1073741819, "ZentCustomize.exe has ended with an error"},
};

TEST(CustomisationProgram, SaysByItsExitCodeHowItWent) {
  for (const EndCase& row : kEndCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    given.machine.processes.EndWith(kProgram, row.end);
    const auto outcome = Apply(given);
    EXPECT_EQ(outcome.number(), row.number);
    if (row.number != 0) {
      EXPECT_EQ(outcome.error().description, row.description);
      continue;
    }
    ASSERT_TRUE(outcome.ok());
    EXPECT_EQ(outcome.value() == CustomisationOutcome::Applied, row.is_applied);
  }
}

TEST(CustomisationProgram, KeepsTheWindowResponsiveWhileItRuns) {
  RunBuilder given;
  given.machine.processes.EndWith(kProgram, {}, 20);
  EXPECT_TRUE(Apply(given).ok());
  EXPECT_THAT(given.window.waits, SizeIs(20));
  EXPECT_THAT(given.window.waits, Each(milliseconds(0)));
  EXPECT_EQ(given.machine.processes.let_go, 0U);
}

TEST(CustomisationProgram, IsWaitedForUpToTheLimit) {
  RunBuilder given;
  given.machine.processes.EndWith(kProgram, {}, FakeProcesses::kNever);
  given.window.on_events = [&](milliseconds) {
    given.machine.clock.Advance(std::chrono::seconds(59));
  };

  const auto outcome = Apply(given);

  EXPECT_EQ(outcome.number(), kAutomationError);
  EXPECT_EQ(
      outcome.error().description,
      R"(Automation error: no end within 30 minutes, C:\Korvo\ZentCustomize.exe is still at work)");
  EXPECT_THAT(given.window.waits, SizeIs(31)) << "59 seconds each";
  EXPECT_EQ(given.machine.processes.let_go, 1U);
}

TEST(CustomisationProgram, ThatTakesLongButEndsInTimeIsNoError) {
  RunBuilder given;
  given.machine.processes.EndWith(kProgram, {}, 29);
  given.window.on_events = [&](milliseconds) {
    given.machine.clock.Advance(std::chrono::minutes(1));
  };
  EXPECT_TRUE(Apply(given).ok());
}

TEST(CustomisationProgram, IsLetGoOfWhenTheWindowIsClosed) {
  RunBuilder given;
  given.machine.processes.EndWith(kProgram, {}, FakeProcesses::kNever);
  given.window.on_events = [&](milliseconds) {
    given.window.close_requested = given.window.waits.size() == 3;
  };

  const auto outcome = Apply(given);

  EXPECT_EQ(outcome.number(), kAutomationError);
  EXPECT_EQ(
      outcome.error().description,
      R"(Automation error: the update was closed, C:\Korvo\ZentCustomize.exe is still at work)");
  EXPECT_THAT(given.window.waits, SizeIs(3));
  EXPECT_EQ(given.machine.processes.let_go, 1U);
}

TEST(CustomisationProgram, ThatCannotBeWaitedForIsAnError) {
  RunBuilder given;
  given.machine.processes.FailWaits(kProgram, StandardError(kDeviceIoError));
  EXPECT_EQ(Apply(given).number(), kDeviceIoError);
}

}  // namespace
}  // namespace zent
