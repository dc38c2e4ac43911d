#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <limits>

#include "fakes/ui/RecordingWindow.h"
#include "lib/RegFuncs.h"
#include "lib/TestMachine.h"

namespace zent {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TestMachine;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

struct VersionCase {
  const char* what;
  OsVersion version;
  const char* text;
};

constexpr VersionCase kVersionCases[] = {
    {"Windows Vista", {kPlatformNt, 6, 0}, "NT 6.0"},
    {"Windows XP", {kPlatformNt, 5, 1}, "NT 5.1"},
    {"a later one", {kPlatformNt, 10, 0}, "NT 10.0"},
    {"Windows 98", {kPlatform9x, 4, 10}, "95 4.10"},
    {"any other family", {0, 3, 10}, "Win3.10"},
    {"a family to come", {3, 1, 2}, "Win1.2"},
};

TEST(GetOSVersionText, NamesFamilyAndVersion) {
  for (const VersionCase& row : kVersionCases) {
    SCOPED_TRACE(row.what);
    testing::FakeSystemInfo system;
    system.version = row.version;
    EXPECT_EQ(GetOSVersionText(system), row.text);
  }
}

/// A window that waits as long as it is told to, on a clock that nothing else moves.
class Waits : public ::testing::Test {
 protected:
  Waits() {
    machine.clock.per_look = milliseconds(0);
    window.on_events = [this](milliseconds wait) { machine.clock.Advance(wait); };
    start = machine.clock.Ticks();
  }

  bool CloseKorvo(double limit) {
    return CloseWindowByTitle(machine.shell, machine.clock, window, "Korvo", limit);
  }
  milliseconds Passed() { return machine.clock.Ticks() - start; }

  TestMachine machine;
  testing::RecordingWindow window;
  milliseconds start{0};
};

TEST_F(Waits, AWindowThatClosesIsGone) {
  machine.shell.AddWindow("KORVO", 3);
  EXPECT_TRUE(CloseKorvo(10));
  EXPECT_THAT(machine.shell.closed, ElementsAre("KORVO"));
  EXPECT_GT(window.waits.size(), 0U);
  EXPECT_THAT(window.waits, Each(milliseconds(50)));
  EXPECT_LT(Passed(), seconds(1));
}

TEST_F(Waits, AWindowThatIsNotThereIsGone) {
  machine.shell.AddWindow("Korvo - Contacts", -1);
  EXPECT_TRUE(CloseKorvo(10));
  EXPECT_THAT(machine.shell.closed, IsEmpty());
  EXPECT_THAT(window.waits, IsEmpty());
}

TEST_F(Waits, AWindowThatStaysIsGivenUpAtTheLimit) {
  machine.shell.AddWindow("Korvo", -1);
  EXPECT_FALSE(CloseKorvo(2));
  EXPECT_THAT(machine.shell.closed, ElementsAre("Korvo")) << "asked once";
  EXPECT_GT(Passed(), seconds(2));
  EXPECT_LE(Passed(), milliseconds(2100));
}

TEST_F(Waits, AWindowIsLookedForAfterAFailedMessageToo) {
  machine.shell.AddWindow("Korvo", -1);
  machine.shell.post_close = StandardError(kPermissionDenied);
  EXPECT_FALSE(CloseKorvo(1));
}

TEST_F(Waits, ANegativeLimitIsNone) {
  for (const double limit : {0.0, -1.0, -kInfinity, kNoNumber}) {
    SCOPED_TRACE(limit);
    machine.shell.windows.clear();
    machine.shell.AddWindow("Korvo", -1);
    start = machine.clock.Ticks();
    EXPECT_FALSE(CloseKorvo(limit));
    EXPECT_LE(Passed(), milliseconds(50));
  }
}

TEST_F(Waits, AHugeLimitEndsWhenTheUserClosesTheUpdater) {
  for (const double limit : {1e300, kInfinity}) {
    SCOPED_TRACE(limit);
    machine.shell.AddWindow("Korvo", -1);
    window.close_requested = false;
    window.on_events = [this](milliseconds) {
      machine.clock.Advance(hours(1000));
      window.close_requested = window.waits.size() % 20 == 0;
    };
    EXPECT_FALSE(CloseKorvo(limit));
    EXPECT_GE(Passed(), hours(20'000));
  }
}

TEST_F(Waits, AnEmptyTitleMeansNoWindow) {
  machine.shell.AddWindow("", -1);
  EXPECT_TRUE(CloseWindowByTitle(machine.shell, machine.clock, window, "", 10));
  EXPECT_THAT(machine.shell.closed, IsEmpty());
}

struct PauseCase {
  const char* what;
  double seconds;
  bool keep_responsive;
  int sleep_step_ms;
  milliseconds passed;
  std::size_t sleeps;
  std::size_t events;  ///< how often the window processes them
};

constexpr PauseCase kPauseCases[] = {
    {"responsive, without sleep", 5, true, 0, milliseconds(5000), 0, 100},
    {"fractions of a second", 0.12, true, 0, milliseconds(120), 0, 3},
    {"responsive, with sleep", 1, true, 250, milliseconds(1000), 4, 4},
    {"a step that does not divide the time", 1, true, 300, milliseconds(1000), 4, 4},
    {"a step longer than the time", 0.5, true, 1000, milliseconds(500), 1, 1},
    {"blocking, with sleep", 1, false, 250, milliseconds(1000), 4, 0},
    {"blocking, without sleep", 1, false, 0, milliseconds(1000), 1, 0},
    {"a negative step is none", 1, false, -5, milliseconds(1000), 1, 0},
    {"no time", 0, true, 0, milliseconds(0), 0, 0},
    {"negative time", -3, true, 100, milliseconds(0), 0, 0},
    {"less time than nothing", -kInfinity, true, 0, milliseconds(0), 0, 0},
    {"not a number", kNoNumber, true, 0, milliseconds(0), 0, 0},
};

TEST_F(Waits, APauseTakesItsTime) {
  for (const PauseCase& row : kPauseCases) {
    SCOPED_TRACE(row.what);
    machine.clock.sleeps.clear();
    window.waits.clear();
    start = machine.clock.Ticks();
    Pause(machine.clock, window, row.seconds, row.keep_responsive, row.sleep_step_ms);
    EXPECT_EQ(Passed(), row.passed);
    EXPECT_EQ(machine.clock.sleeps.size(), row.sleeps);
    EXPECT_EQ(window.waits.size(), row.events);
  }
}

TEST_F(Waits, APauseKnowsNoMidnight) {
  machine.clock.SetNow(
      {.year = 2005, .month = 1, .day = 2, .hour = 23, .minute = 59, .second = 58});
  Pause(machine.clock, window, 5, true);
  EXPECT_EQ(Passed(), seconds(5));
  EXPECT_EQ(machine.clock.Now().day, 3);
}

TEST_F(Waits, APauseEndsWhenTheUserClosesTheUpdater) {
  for (const double length : {60.0, 1e300, kInfinity}) {
    for (const int step : {0, 50}) {
      SCOPED_TRACE(length);
      window.close_requested = false;
      start = machine.clock.Ticks();
      window.on_events = [this](milliseconds wait) {
        machine.clock.Advance(wait);
        window.close_requested = Passed() >= seconds(1);
      };
      Pause(machine.clock, window, length, true, step);
      EXPECT_EQ(Passed(), seconds(1));
    }
  }
}

TEST_F(Waits, ABlockingPauseTakesNoNoticeOfTheUser) {
  window.close_requested = true;
  Pause(machine.clock, window, 2, false);
  EXPECT_EQ(Passed(), seconds(2));
}

struct ShutdownCase {
  const char* what;
  ShutdownFlags flags;
  std::uint32_t action;
};

constexpr ShutdownCase kShutdownCases[] = {
    {"no flag shuts down", {}, 1},
    {"restart", {.restart = true}, 2},
    {"power off", {.power_off = true}, 8},
    {"power off goes before restart", {.restart = true, .power_off = true}, 8},
    {"force alone", {.force = true}, 17},
    {"force and restart", {.force = true, .restart = true}, 18},
    {"force and power off", {.force = true, .power_off = true}, 24},
    {"all", {.force = true, .restart = true, .power_off = true}, 24},
};

TEST(ShutdownWindows, EndsTheSessionAsTheFlagsSay) {
  for (const ShutdownCase& row : kShutdownCases) {
    SCOPED_TRACE(row.what);
    TestMachine machine;
    EXPECT_TRUE(ShutdownWindows(machine.ports, row.flags).ok());
    EXPECT_THAT(machine.shell.sessions, ElementsAre(row.action));
    EXPECT_EQ(machine.shell.privilege_calls, 1);
  }
}

TEST(ShutdownWindows, DoesNothingOnTheNtFamilyWithoutTheRight) {
  TestMachine machine;
  machine.shell.privilege = false;
  EXPECT_FALSE(EnableShutdownPrivilege(machine.shell));
  EXPECT_EQ(ShutdownWindows(machine.ports, {.restart = true}).number(), kPermissionDenied);
  EXPECT_THAT(machine.shell.sessions, IsEmpty());
}

TEST(ShutdownWindows, NeedsNoRightOnOtherFamilies) {
  for (const std::uint32_t family : {kPlatform9x, std::uint32_t{0}}) {
    SCOPED_TRACE(family);
    TestMachine machine;
    machine.system.version = {family, 4, 10};
    machine.shell.privilege = false;
    EXPECT_TRUE(ShutdownWindows(machine.ports, {.restart = true}).ok());
    EXPECT_THAT(machine.shell.sessions, ElementsAre(2U));
    EXPECT_EQ(machine.shell.privilege_calls, 0);
  }
}

TEST(ShutdownWindows, ReturnsWhatWentWrong) {
  TestMachine machine;
  machine.shell.end_session = StandardError(kActionNotSupported);
  EXPECT_EQ(ShutdownWindows(machine.ports, {}).number(), kActionNotSupported);
}

}  // namespace
}  // namespace zent
