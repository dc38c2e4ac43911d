#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/ui/FakeShell.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;

TEST(FakeShell, AWindowStaysForTheLooksGiven) {
  FakeShell shell;
  shell.AddWindow("Korvo", 2);
  const WindowHandle window = shell.FindWindowByTitle("KORVO");
  ASSERT_NE(window, WindowHandle::None);
  EXPECT_EQ(shell.FindWindowByTitle("Korvo"), window) << "nobody has asked it to close";

  EXPECT_TRUE(shell.PostClose(window).ok());

  EXPECT_EQ(shell.FindWindowByTitle("Korvo"), window);
  EXPECT_EQ(shell.FindWindowByTitle("Korvo"), window);
  EXPECT_EQ(shell.FindWindowByTitle("Korvo"), WindowHandle::None);
  EXPECT_THAT(shell.closed, ElementsAre("Korvo"));
  EXPECT_EQ(shell.PostClose(window).number(), kInvalidProcedureCall) << "it is gone";
}

TEST(FakeShell, AWindowMayStayForEver) {
  FakeShell shell;
  shell.AddWindow("Korvo", -1);
  const WindowHandle window = shell.FindWindowByTitle("Korvo");
  ASSERT_TRUE(shell.PostClose(window).ok());
  for (int i = 0; i < 100; ++i) ASSERT_EQ(shell.FindWindowByTitle("Korvo"), window);
}

TEST(FakeShell, RecordsCallsAndReturnsWhatIsSet) {
  FakeShell shell;
  shell.end_session = StandardError(kPermissionDenied);
  shell.open_address = StandardError(kDeviceUnavailable);
  shell.privilege = false;

  EXPECT_EQ(shell.EndSession(kRestart | kForce).number(), kPermissionDenied);
  EXPECT_EQ(shell.OpenAddress("http://a.example/").number(), kDeviceUnavailable);
  EXPECT_FALSE(shell.AcquireShutdownPrivilege());
  EXPECT_EQ(shell.FindWindowByTitle("none"), WindowHandle::None);

  EXPECT_THAT(shell.sessions, ElementsAre(18U));
  EXPECT_THAT(shell.addresses, ElementsAre("http://a.example/"));
  EXPECT_THAT(shell.searched, ElementsAre("none"));
  EXPECT_EQ(shell.privilege_calls, 1);
}

}  // namespace
}  // namespace zent::testing
