#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenarios/kill/TracedRun.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;

TracedProgram Script(const TempFolder& folder, const std::string& script) {
  return {{"/bin/sh", "-c", script}, folder.path()};
}

TEST(TracedRun, CountsTheChangesInItsFolder) {
  const TempFolder folder;
  const TracedEnd end = RunTraced(Script(folder, "echo a > one; echo b > /dev/null; exit 3"));
  ASSERT_EQ(end.error, "");
  EXPECT_EQ(end.exit_code, 3);
  EXPECT_FALSE(end.killed);
  EXPECT_THAT(end.calls, Contains("write").Times(1));
  EXPECT_EQ(folder.Get("one"), "a\n");
}

TEST(TracedRun, AProgramThatChangesNothingHasNoCalls) {
  const TempFolder folder;
  EXPECT_THAT(RunTraced(Script(folder, "echo a")).calls, IsEmpty());
}

TEST(TracedRun, TheCallItIsKilledAtTakesNoEffect) {
  const TempFolder folder;
  const TracedEnd whole = RunTraced(Script(folder, "echo a > one; echo b > two"));
  ASSERT_EQ(whole.error, "");
  ASSERT_EQ(whole.calls.size(), 4U);  // open and write, twice
  for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
    SCOPED_TRACE(at);
    const TempFolder fresh;
    const TracedEnd end = RunTraced(Script(fresh, "echo a > one; echo b > two"), at);
    EXPECT_TRUE(end.killed);
    EXPECT_EQ(std::filesystem::exists(fresh.path() / "one"), at > 1);
    EXPECT_EQ(fresh.Get("one"), at > 2 ? "a\n" : "");
    EXPECT_EQ(std::filesystem::exists(fresh.path() / "two"), at > 3);
    EXPECT_EQ(fresh.Get("two"), "");
  }
}

TEST(TracedRun, AProgramThatIsMissingIsAnError) {
  const TempFolder folder;
  EXPECT_EQ(RunTraced({{"/nosuch"}, folder.path()}).error, "the program does not start");
}

}  // namespace
}  // namespace zent::testing
