#include <gtest/gtest.h>

#include "driver/run/Messages.h"

namespace zent {
namespace {

struct WordingCase {
  const char* what;
  const char* written;
  const char* shown;
};

constexpr WordingCase kWordingCases[] = {
    {"the blank before Server is kept as it is", "Open SQL Server now", "Open  Server now"},
    {"any case", "sql SERVER", " Server"},
    {"every occurrence", "SQL Server, SQL Server", " Server,  Server"},
    {"MSSQLServer loses its prefix as a whole", "MSSQLServer", "Server"},
    {"SQLServer", "SQLServer kind", "Server kind"},
    {"Microsoft goes and leaves its blank", "Microsoft Outlook", " Outlook"},
    {"in this order: the first takes the words before the last", "Microsoft SQL Server",
     "  Server"},
    {"nothing to replace", "Copying a to b", "Copying a to b"},
};

TEST(OracleWording, ReplacesInTheStatedOrder) {
  for (const WordingCase& row : kWordingCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(OracleWording(row.written), row.shown);
  }
}

TEST(IsOracleTitle, TakesTheWordInAnyCaseAnywhere) {
  EXPECT_TRUE(IsOracleTitle("Korvo for ORACLE 3.6"));
  EXPECT_TRUE(IsOracleTitle("oracle"));
  EXPECT_FALSE(IsOracleTitle("Korvo Update"));
}

TEST(ReasonOf, HasTheNumberBehindTheDescription) {
  EXPECT_EQ(ReasonOf({.number = 70, .description = "Permission denied"}), "Permission denied (70)");
}

TEST(ErrorText, HasHeadlineDescriptionAndNumberOnLinesOfTheirOwn) {
  EXPECT_EQ(ErrorText("Error Copying a.dll", {.number = 70, .description = "Permission denied"}),
            "Error Copying a.dll\r\nDescription: Permission denied\r\nNumber: 70");
}

}  // namespace
}  // namespace zent
