#include <gtest/gtest.h>

#include "fakes/FakeSystemInfo.h"

namespace zent::testing {
namespace {

TEST(FakeSystemInfo, SaysWhatTheTestSets) {
  FakeSystemInfo system;
  system.version = {kPlatformNt, 5, 1};
  system.windows_folder = R"(D:\Win)";
  SystemInfo& port = system;
  EXPECT_EQ(port.Version().major, 5U);
  EXPECT_EQ(port.WindowsFolder(), R"(D:\Win)");
  EXPECT_EQ(port.SystemFolder(), R"(C:\windows\system32)");
  EXPECT_EQ(port.TempFolder(), R"(C:\windows\temp)");
}

TEST(FakeSystemInfo, KnowsVariablesInAnyCase) {
  FakeSystemInfo system;
  system.environment["TEMP"] = R"(C:\t)";
  EXPECT_EQ(ExpandEnvironment(system, "%Temp%|%none%"), R"(C:\t|%none%)");
}

TEST(FakeSystemInfo, HasTheCodePageThatTheTestSets) {
  FakeSystemInfo system;
  EXPECT_EQ(system.FromAnsi("a\x81\xFC"), "a\xC2\x81\xC3\xBC");
  EXPECT_EQ(system.ToAnsi("a\xC2\x81\xC3\xBC"), "a\x81\xFC");

  system.letters['\x81'] = "\xC3\xBC";
  EXPECT_EQ(system.FromAnsi("a\x81"), "a\xC3\xBC");
  EXPECT_EQ(system.ToAnsi("a\xC3\xBC"), "a\x81");
}

}  // namespace
}  // namespace zent::testing
