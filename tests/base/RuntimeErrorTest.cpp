#include <gtest/gtest.h>

#include "base/Status.h"

namespace zent {
namespace {

TEST(StandardError, HasTheDescriptionThatUsersKnow) {
  EXPECT_EQ(StandardError(kFileNotFound).description, "File not found");
  EXPECT_EQ(StandardError(kSubscriptOutOfRange).description, "Subscript out of range");
  EXPECT_EQ(StandardError(kPathNotFound, R"(C:\x)").description, R"(Path not found: C:\x)");
  EXPECT_EQ(StandardError(9999).description, "Application-defined or object-defined error");
}

TEST(Result, HoldsAValueOrAnError) {
  const Result<int> value(7);
  const Result<int> failed(StandardError(kDiskFull));
  EXPECT_EQ(value.value(), 7);
  EXPECT_EQ(value.number(), 0);
  EXPECT_FALSE(failed.ok());
  EXPECT_EQ(failed.number(), kDiskFull);
  EXPECT_EQ(failed.value_or(3), 3);
  EXPECT_EQ(failed.status().number(), kDiskFull);
}

}  // namespace
}  // namespace zent
