#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/x11/OwnWindow.h"
#include "platform/x11/X11DesktopWindows.h"

namespace zent::testing {
namespace {

using std::chrono::milliseconds;

bool WaitUntil(const std::function<bool()>& done, milliseconds limit = std::chrono::seconds(20)) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!done()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(milliseconds(20));
  }
  return true;
}

/// The program OtherProgram, running until it closes or the test ends.
class OtherProgram {
 public:
  explicit OtherProgram(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), ZENT_OTHER_PROGRAM);
    std::vector<char*> raw;
    raw.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) raw.push_back(argument.data());
    raw.push_back(nullptr);
    EXPECT_EQ(::posix_spawn(&process_, raw[0], nullptr, nullptr, raw.data(), environ), 0);
  }
  ~OtherProgram() {
    if (HasEnded()) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

  bool HasEnded() {
    if (!ended_) ended_ = ::waitpid(process_, nullptr, WNOHANG) == process_;
    return ended_;
  }

 private:
  pid_t process_ = 0;
  bool ended_ = false;
};

bool IsThere(X11DesktopWindows& windows, const char* title) {
  return windows.FindWindowByTitle(title) != WindowHandle::None;
}

TEST(X11DesktopWindows, ClosesAnotherProgramByItsTitle) {
  X11DesktopWindows windows;
  OtherProgram other({"Korvo \u00c4ndern"});
  ASSERT_TRUE(WaitUntil([&] { return IsThere(windows, "Korvo \u00c4ndern"); }));
  EXPECT_TRUE(IsThere(windows, "KORVO \u00e4ndern")) << "without regard to case";
  EXPECT_FALSE(IsThere(windows, "Korvo")) << "the whole title";
  EXPECT_FALSE(IsThere(windows, "Korvo \u00c4ndern "));
  EXPECT_FALSE(other.HasEnded());

  EXPECT_TRUE(windows.PostClose(windows.FindWindowByTitle("Korvo \u00c4ndern")).ok());
  EXPECT_TRUE(WaitUntil([&] { return !IsThere(windows, "Korvo \u00c4ndern"); }));
  EXPECT_TRUE(WaitUntil([&] { return other.HasEnded(); }));
}

TEST(X11DesktopWindows, LeavesAProgramThatRefuses) {
  X11DesktopWindows windows;
  OtherProgram other({"Korvo", "refuse"});
  ASSERT_TRUE(WaitUntil([&] { return IsThere(windows, "Korvo"); }));
  const WindowHandle window = windows.FindWindowByTitle("Korvo");
  EXPECT_TRUE(windows.PostClose(window).ok()) << "it was asked";
  EXPECT_FALSE(WaitUntil([&] { return !IsThere(windows, "Korvo"); }, milliseconds(1000)));
  EXPECT_EQ(windows.FindWindowByTitle("Korvo"), window);
  EXPECT_FALSE(other.HasEnded());
}

TEST(X11DesktopWindows, AsksTheWindowManagerForAWindowThatDoesNotUnderstand) {
  X11DesktopWindows windows;
  {
    const OwnWindow own;
    own.SetLatin1("WM_NAME", "Old \xC4 program");
    own.Show();
    ASSERT_TRUE(WaitUntil([&] { return IsThere(windows, "old \u00c4 PROGRAM"); }));
    EXPECT_TRUE(windows.PostClose(windows.FindWindowByTitle("Old \u00c4 program")).ok());
    EXPECT_TRUE(WaitUntil([&] { return !IsThere(windows, "Old \u00c4 program"); }));
  }
}

TEST(X11DesktopWindows, TakesTheInternationalTitleFirst) {
  X11DesktopWindows windows;
  const OwnWindow own;
  own.SetLatin1("WM_NAME", "plain");
  own.SetUtf8("_NET_WM_NAME", "\u65e5\u672c");
  own.Show();
  EXPECT_TRUE(WaitUntil([&] { return IsThere(windows, "\u65e5\u672c"); }));
  EXPECT_FALSE(IsThere(windows, "plain"));
}

TEST(X11DesktopWindows, FindsNoWindowThatIsHidden) {
  X11DesktopWindows windows;
  const OwnWindow own;
  own.SetUtf8("_NET_WM_NAME", "Hidden");
  EXPECT_FALSE(WaitUntil([&] { return IsThere(windows, "Hidden"); }, milliseconds(300)));
}

TEST(X11DesktopWindows, TakesTheTopmostOfTwo) {
  X11DesktopWindows windows;
  OtherProgram lower({"Twin"});
  ASSERT_TRUE(WaitUntil([&] { return IsThere(windows, "Twin"); }));
  const WindowHandle first = windows.FindWindowByTitle("Twin");
  OtherProgram upper({"Twin"});
  EXPECT_TRUE(WaitUntil([&] { return windows.FindWindowByTitle("Twin") != first; }));
}

TEST(X11DesktopWindows, RefusesAWindowThatHasGone) {
  X11DesktopWindows windows;
  EXPECT_EQ(windows.PostClose(WindowHandle::None).number(), kInvalidProcedureCall);
  EXPECT_EQ(windows.PostClose(WindowHandle{0x1234567}).number(), kInvalidProcedureCall);
}

TEST(X11DesktopWindows, AreNoneWithoutADisplay) {
  const std::string display = ::getenv("DISPLAY");
  ::setenv("DISPLAY", ":9999", 1);
  X11DesktopWindows windows;
  ::setenv("DISPLAY", display.c_str(), 1);
  EXPECT_FALSE(IsThere(windows, "Korvo"));
  EXPECT_EQ(windows.PostClose(WindowHandle{1}).number(), kDeviceUnavailable);
}

}  // namespace
}  // namespace zent::testing
