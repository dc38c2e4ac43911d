#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/run/UpdateRun.h"
#include "fakes/run/RunBuilder.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using testing::RunBuilder;

TEST(ShowMsg, PutsTwoBlanksBeforeAndABreakBehind) {
  RunBuilder given;
  given.run.ShowMsg("one");
  given.run.ShowMsg("two");
  EXPECT_EQ(given.window.log, "  one\r\n  two\r\n");
  EXPECT_THAT(given.messages(), ElementsAre("one", "two"));
}

TEST(ShowMsg, ALoneLineBreakAddsALineOfTwoBlanksAndAnEmptyLine) {
  RunBuilder given;
  given.run.ShowMsg("\r\n");
  EXPECT_EQ(given.window.log, "  \r\n\r\n");
}

TEST(ShowMsg, IsRewordedUnderAnOracleTitleOfAnyCase) {
  RunBuilder given;
  given.run.ShowMsg("SQL Server");
  given.run.SetTitle("Korvo for oRACLE");
  given.run.ShowMsg("SQL Server");
  EXPECT_EQ(given.window.log, "  SQL Server\r\n   Server\r\n");
}

TEST(ShowMsg, TheWindowHoldsTheLast30000Characters) {
  RunBuilder given;
  for (int i = 0; i < 1000; ++i) given.run.ShowMsg(std::string(100, 'x'));
  EXPECT_EQ(given.window.log.size(), 30000U);
  EXPECT_EQ(given.window.log, given.run.LogText());
  EXPECT_EQ(given.messages().size(), 1000U);
}

TEST(Report, ShowsABoxAndStopsTheRun) {
  RunBuilder given;
  given.run.BeginCommand({.line = 3, .keyword = "mkdr"});
  given.run.Report("Error creating folder x", StandardError(kPathNotFound));
  given.run.EndCommand();

  EXPECT_TRUE(given.run.state.ErrorOccurred);
  ASSERT_EQ(given.window.questions.size(), 1U);
  const MessageQuestion& box = given.window.questions[0];
  EXPECT_EQ(box.text, "Error creating folder x\r\nDescription: Path not found\r\nNumber: 76");
  EXPECT_EQ(box.title, "ZentUpdate");
  EXPECT_EQ(box.icon, BoxIcon::Information);
  EXPECT_EQ(given.observer.records[0].outcome, Outcome::Failed);
  EXPECT_EQ(given.observer.records[0].reason, "Path not found (76)");
}

TEST(ShowError, SaysThreeLinesAndGoesOn) {
  RunBuilder given;
  given.run.ShowError("Error closing Korvo", StandardError(kPermissionDenied));
  EXPECT_THAT(given.messages(),
              ElementsAre("Error closing Korvo", "Description: Permission denied", "Number: 70"));
  EXPECT_FALSE(given.run.state.ErrorOccurred);
}

TEST(Records, KeepTheWorstOutcomeAndEveryReason) {
  RunBuilder given;
  given.run.BeginCommand({.line = 1, .keyword = "x"});
  given.run.Warn("first");
  given.run.Skip("second");
  given.run.Warn("first");
  given.run.EndCommand();
  given.run.BeginCommand({.line = 2, .keyword = "y"});
  given.run.EndCommand();

  EXPECT_EQ(given.observer.records[0].outcome, Outcome::Warned);
  EXPECT_EQ(given.observer.records[0].reason, "first; second");
  EXPECT_EQ(given.observer.records[1].outcome, Outcome::Done);
  EXPECT_EQ(given.run.WorstOutcome(), Outcome::Warned);
}

TEST(Records, TakeAReasonForAnotherThanTheOneThatItIsAPartOf) {
  RunBuilder given;
  given.run.BeginCommand({.line = 1, .keyword = "x"});
  for (const char* place : {"Form10", "Form1", "Form", "orm10", "Form1", "Form10", "Form", ""}) {
    given.run.Warn(place);
  }
  given.run.EndCommand();
  EXPECT_EQ(given.observer.records[0].reason, "Form10; Form1; Form; orm10");
}

TEST(Records, ANoteLeavesATraceAndNoOutcome) {
  RunBuilder given;
  given.run.BeginCommand({.line = 1, .keyword = "x"});
  given.run.Note("one of two was there already");
  given.run.EndCommand();
  EXPECT_EQ(given.observer.records[0].outcome, Outcome::Done);
  EXPECT_EQ(given.observer.records[0].reason, "one of two was there already");
}

TEST(Records, ThousandsOfReasonsAreCutButNotTheWorst) {
  RunBuilder given;
  given.run.BeginCommand({.line = 1, .keyword = "x"});
  for (int i = 0; i < 5000; ++i) given.run.Warn("reason " + std::to_string(i));
  given.run.Warn(std::string(100'000, 'x'));
  given.run.Fail("disk full");
  given.run.EndCommand();

  const CommandRecord& record = given.observer.records[0];
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_THAT(record.reason, ::testing::StartsWith("reason 0; reason 1; "));
  EXPECT_THAT(record.reason, ::testing::HasSubstr("; ...; disk full"));
  EXPECT_LT(record.reason.size(), 2500U);
}

TEST(Tolerate, OnlyRecordsInAPlainRun) {
  RunBuilder given;
  given.run.BeginCommand({.line = 1, .keyword = "x"});
  EXPECT_TRUE(given.run.Tolerate("unknown path macro $(x)"));
  given.run.EndCommand();
  EXPECT_FALSE(given.run.state.ErrorOccurred);
  EXPECT_EQ(given.observer.records[0].outcome, Outcome::Warned);
}

TEST(Tolerate, RefusesInAStrictRun) {
  RunBuilder given({.strict = true});
  EXPECT_FALSE(given.run.Tolerate("unknown path macro $(x)"));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_TRUE(given.run.Refused());
  EXPECT_EQ(given.window.questions.size(), 1U);
}

TEST(AskText, NeverTellsAPassword) {
  RunBuilder given;
  given.window.texts = {"secret", "anna"};
  given.run.AskText({.title = "Enter Password", .prompt = "?", .hidden = true});
  given.run.AskText({.title = "Enter Username", .prompt = "?"});
  given.run.AskText({.title = "Enter Password", .prompt = "?", .hidden = true});
  EXPECT_THAT(given.observer.inputs,
              ElementsAre("Enter Password: ***", "Enter Username: anna", "Enter Password: "));
}

TEST(StartWaited, TellsTheLineAsStartDoes) {
  RunBuilder given;
  given.machine.processes.EndWith(R"(C:\a.exe)", {.exit_code = 3});
  const auto program = given.run.StartWaited(
      {.program = R"(C:\a.exe)", .arguments = "PWD=x;", .command_line = "a.exe PWD=x;"});
  ASSERT_TRUE(program.ok());
  EXPECT_EQ(program.value()->Wait(std::chrono::milliseconds(0)).value()->exit_code, 3U);
  EXPECT_EQ(given.observer.launches, std::vector<std::string>{"a.exe ******"});
}

TEST(Start, TellsTheLineAsGivenWithoutItsPassword) {
  RunBuilder given;
  const Result<std::uint32_t> task = given.run.Start(
      {.program = R"(C:\a.exe)", .arguments = "PWD=x;", .command_line = R"(C:\a.exe PWD=x;)"});
  EXPECT_TRUE(task.ok());
  EXPECT_THAT(given.observer.launches, ElementsAre(R"(C:\a.exe ******)"));
  EXPECT_EQ(given.machine.processes.launches[0].arguments, "PWD=x;");
}

TEST(TwoRuns, ShareNothing) {
  RunBuilder one;
  RunBuilder two;
  one.run.Report("Error", StandardError(kDiskFull));
  one.run.ShowMsg("one");
  EXPECT_FALSE(two.run.state.ErrorOccurred);
  EXPECT_EQ(two.window.log, "");
}

}  // namespace
}  // namespace zent
