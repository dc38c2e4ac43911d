#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenarios/compare/Exceptions.h"

namespace zent::testing {
namespace {

using ::testing::HasSubstr;

constexpr const char* kText = "one\ntwo\nthree\n";

struct ExceptionCase {
  const char* what;
  const char* exceptions;
  const char* result;
};

constexpr ExceptionCase kCases[] = {
    {"none", "", "one\ntwo\nthree\n"},
    {"for another text", "# why\nlog\n- two\n", "one\ntwo\nthree\n"},
    {"a line goes", "# why\nrecords\n- two\n", "one\nthree\n"},
    {"a line is another", "# why\nrecords\n- two\n+ 2\n+ 2b\n", "one\n2\n2b\nthree\n"},
    {"lines go together", "# why\nrecords\n- one\n- two\n", "three\n"},
    {"a line comes", "# why\nrecords\n+ four\n", "one\ntwo\nthree\nfour\n"},
    {"the rest of a line does not count", "# why\nrecords\n- t*\n+ 2\n", "one\n2\nthree\n"},
    {"one reason for two texts", "# why,\n# and why\nlog\n- x\nrecords\n- one\n", "two\nthree\n"},
    {"two reasons", "# why\nrecords\n- one\n\n# why else\nrecords\n- three\n", "two\n"},
};

TEST(ApplyExceptions, ChangesTheLinesThatItNames) {
  for (const ExceptionCase& row : kCases) {
    SCOPED_TRACE(row.what);
    const auto [text, wrong] = ApplyExceptions(row.exceptions, "records", kText);
    EXPECT_EQ(text, row.result);
    EXPECT_EQ(wrong, "");
  }
}

TEST(ApplyExceptions, RefusesWhatIsNotExplained) {
  EXPECT_THAT(ApplyExceptions("records\n- two\n", "records", kText).second,
              HasSubstr("without a reason"));
  EXPECT_THAT(ApplyExceptions("#\nrecords\n- two\n", "records", kText).second,
              HasSubstr("without a reason"));
}

TEST(ApplyExceptions, RefusesWhatNothingNeeds) {
  for (const char* exceptions :
       {"# why\nrecords\n- four\n", "# why\nrecords\n- two\n- one\n", "# why\nrecords\n- x*\n"}) {
    SCOPED_TRACE(exceptions);
    const auto [text, wrong] = ApplyExceptions(exceptions, "records", kText);
    EXPECT_EQ(text, kText);
    EXPECT_THAT(wrong, HasSubstr("nothing needs"));
  }
}

}  // namespace
}  // namespace zent::testing
