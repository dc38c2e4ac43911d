#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/BasicCommands.h"
#include "fakes/run/RunBuilder.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::RunBuilder;

TEST(ShowText, TakesTheQuotesOffOnceMore) {
  RunBuilder given;
  given.Call(ShowText, {"msg", "\"Hello, Anna\""});
  EXPECT_THAT(given.messages(), ElementsAre("Hello, Anna"));
}

TEST(ShowText, ShowsAnEmptyText) {
  RunBuilder given;
  given.Call(ShowText, {"msg", ""});
  EXPECT_EQ(given.window.log, "  \r\n");
}

struct WaitCase {
  const char* what;
  const char* seconds;
  int milliseconds;
};

constexpr WaitCase kWaitCases[] = {
    {"fractions count", "1.5", 1500},
    {"the number at the start counts", "2 seconds", 2000},
    {"no number does not wait", "soon", 0},
    {"a negative number does not wait", "-3", 0},
};

TEST(WaitSeconds, WaitsThatLong) {
  for (const WaitCase& row : kWaitCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    given.machine.clock.per_look = std::chrono::milliseconds(0);
    given.window.on_events = [&](std::chrono::milliseconds) {
      given.machine.clock.Advance(std::chrono::milliseconds(100));
    };
    const auto start = given.machine.clock.ticks;
    given.Call(WaitSeconds, {"wait", row.seconds});
    EXPECT_EQ((given.machine.clock.ticks - start).count(), row.milliseconds);
  }
}

TEST(WaitSeconds, EndsWhenTheUserClosesTheWindow) {
  RunBuilder given;
  given.window.on_events = [&](std::chrono::milliseconds) { given.window.close_requested = true; };
  given.Call(WaitSeconds, {"wait", "100000"});
  EXPECT_EQ(given.window.waits.size(), 1U);
}

TEST(WriteSetting, WritesTheValueAndSaysNothing) {
  RunBuilder given;
  given.machine.files.PutFile(R"(C:\Korvo\NetUpd.ini)", "[Update]\r\nVersion=1\r\n");
  const CommandRecord record =
      given.Call(WriteSetting, {"wrttoini", R"($(apppath)\NetUpd.ini)", "Update", "Version", "2"});
  EXPECT_EQ(given.machine.files.Contents(R"(C:\Korvo\NetUpd.ini)"), "[Update]\r\nVersion=2\r\n");
  EXPECT_EQ(record.outcome, Outcome::Done);
  EXPECT_THAT(given.messages(), IsEmpty());
  EXPECT_THAT(given.window.boxes, IsEmpty());
}

TEST(WriteSetting, AFailureIsRecordedButNeitherShownNorAnErrorOfTheRun) {
  RunBuilder given;
  const CommandRecord record =
      given.Call(WriteSetting, {"wrttoini", R"(C:\nosuch\a.ini)", "S", "K", "v"});
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_FALSE(given.run.state.ErrorOccurred);
}

TEST(WriteSetting, ANameWithoutAFolderLiesInTheWindowsFolder) {
  RunBuilder given;
  given.Call(WriteSetting, {"wrttoini", "Korvo360.ini", "S", "K", "v"});
  EXPECT_EQ(given.machine.files.Contents(R"(C:\windows\Korvo360.ini)"), "[S]\r\nK=v\r\n");
}

TEST(WriteSetting, AMacroWithoutABackslashIsNoBareName) {
  RunBuilder given;
  given.Call(WriteSetting, {"wrttoini", "$(apppath)x.ini", "S", "K", "v"});
  EXPECT_EQ(given.machine.files.Contents(R"(C:\Korvo\.ini)"), "[S]\r\nK=v\r\n");
}

TEST(WriteSetting, ARelativePathCountsFromThePackageFolder) {
  RunBuilder given;
  given.machine.files.PutFolder(R"(D:\Package\Sub)");
  given.Call(WriteSetting, {"wrttoini", R"(Sub\a.ini)", "S", "K", "v"});
  EXPECT_EQ(given.machine.files.Contents(R"(D:\Package\Sub\a.ini)"), "[S]\r\nK=v\r\n");
}

TEST(WriteSetting, TheApplicationsSettingsFileIsWhereThePathsFileSays) {
  RunBuilder given;
  given.machine.InstallKorvo();
  given.Call(WriteSetting, {"wrttoini", R"($(apppath)\Korvo.ini)", "General", "New", "1"});
  EXPECT_EQ(given.machine.files.Contents(R"(C:\Ini\Korvo.ini)"),
            "[General]\r\nDataPath=D:\\Data\r\nNew=1\r\n");
  EXPECT_FALSE(given.machine.files.Exists(R"(C:\Korvo\Korvo.ini)"));
}

TEST(BasicCommands, TooFewTokensIsAReportedError9) {
  for (const auto& [handler, tokens] :
       {std::pair{&ShowText, TokenList{"msg"}}, std::pair{&WaitSeconds, TokenList{"wait"}},
        std::pair{&WriteSetting, TokenList{"wrttoini", "a.ini", "S", "K"}}}) {
    RunBuilder given;
    given.Call(handler, tokens);
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_THAT(
        given.window.boxes,
        ElementsAre(::testing::EndsWith("Description: Subscript out of range\r\nNumber: 9")));
  }
}

}  // namespace
}  // namespace zent
