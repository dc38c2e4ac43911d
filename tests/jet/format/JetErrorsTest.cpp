#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

struct ErrorCase {
  const char* what;
  RuntimeError error;
  int number;
  const char* description;
};

const ErrorCase kErrors[] = {
    {"a text without a name", JetError(kInvalidPassword), 3031, "Not a valid password."},
    {"a name in its place", JetError(kTableExists, "Orders"), 3010,
     "Table 'Orders' already exists."},
    {"a name with a bar", JetError(kTableExists, "a|b"), 3010, "Table 'a|b' already exists."},
    {"our words behind", JetErrorBecause(kReadOnly, "an Access 97 file"), 3027,
     "Cannot update.  Database or object is read-only. (an Access 97 file)"},
    {"a validation text as it is", JetError(kValidationFailed, "Must be above 0"), 3316,
     "Must be above 0"},
    {"no text for a number", JetError(1), 1, "Reserved error."},
    {"damage", Damaged(17, "no data page"), 3049,
     "Cannot open database ''.  It may not be a database that your application recognizes, or the "
     "file may be corrupt. (page 17: no data page)"},
};

TEST(JetError, HasTheNumbersAndTextsOfDao) {
  for (const ErrorCase& row : kErrors) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(row.error.number, row.number);
    EXPECT_EQ(row.error.description, row.description);
    EXPECT_EQ(row.error.source, "DAO");
  }
}

}  // namespace
}  // namespace zent::jet
