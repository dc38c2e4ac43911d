#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/CallLog.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(CallLog, RecordsCallsAndChanges) {
  CallLog log;
  EXPECT_TRUE(log.Read("Find a").ok());
  EXPECT_TRUE(log.Change("Delete a").ok());
  EXPECT_THAT(log.calls(), ElementsAre("Find a", "Delete a"));
  EXPECT_THAT(log.changes(), ElementsAre("Delete a"));
  log.Forget();
  EXPECT_THAT(log.calls(), IsEmpty());
  EXPECT_THAT(log.changes(), IsEmpty());
}

TEST(CallLog, FailsTheNthChangeFromNowOnAndNoOther) {
  CallLog log;
  EXPECT_TRUE(log.Change("before").ok());
  log.FailChange(2, StandardError(kDiskFull));
  EXPECT_TRUE(log.Change("first").ok());
  EXPECT_TRUE(log.Read("a read does not count").ok());
  EXPECT_EQ(log.Change("second").number(), kDiskFull);
  EXPECT_TRUE(log.Change("third").ok());
  EXPECT_EQ(log.changes().size(), 4U);
}

TEST(CallLog, FailsEveryCallThatHoldsAText) {
  CallLog log;
  log.FailWhere(R"(delete c:\a)", StandardError(kPermissionDenied));
  EXPECT_EQ(log.Change(R"(Delete C:\A.txt)").number(), kPermissionDenied);
  EXPECT_EQ(log.Change(R"(Delete C:\A.txt)").number(), kPermissionDenied);
  EXPECT_TRUE(log.Change(R"(Write C:\A.txt)").ok());
  log.FailNothing();
  EXPECT_TRUE(log.Change(R"(Delete C:\A.txt)").ok());
}

}  // namespace
}  // namespace zent::testing
