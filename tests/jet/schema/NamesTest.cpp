#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/schema/Names.h"

namespace zent::jet {
namespace {

struct NameCase {
  const char* what;
  std::string name;
  bool right;
};
const NameCase kNames[] = {
    {"plain", "Orders", true},
    {"with a blank within", "Order Details", true},
    {"not of Latin letters", "\xD0\x9F\xD0\xB0", true},
    {"64 characters", std::string(64, 'n'), true},
    {"65 characters", std::string(65, 'n'), false},
    {"empty", "", false},
    {"leading blank", " Orders", false},
    {"full stop", "a.b", false},
    {"exclamation mark", "a!b", false},
    {"grave accent", "a`b", false},
    {"opening bracket", "a[b", false},
    {"closing bracket", "a]b", false},
    {"control character", "a\tb", false},
    {"no text", "a\xFF", false},
};

TEST(CheckName, KnowsWhatANameIs) {
  for (const NameCase& row : kNames) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(CheckName(row.name).number(), row.right ? 0 : kInvalidName);
  }
}

}  // namespace
}  // namespace zent::jet
