#include <gtest/gtest.h>

#include "database/engines/odbc/OdbcDefinitions.h"

namespace zent {
namespace {

struct FindCase {
  const char* what;
  std::vector<odbc::TableName> tables;  ///< as the server lists them
  const char* name;
  const char* found;  ///< "schema.name"; empty for none
};

const FindCase kFindCases[] = {
    {"the only one", {{"", "", "Lookup"}}, "Lookup", ".Lookup"},
    {"in another case", {{"", "", "Counters"}, {"", "", "LOOKUP"}}, "Lookup", ".LOOKUP"},
    {"as it is written", {{"", "", "lookup"}, {"", "", "Lookup"}}, "Lookup", ".Lookup"},
    {"of two in another case the first",
     {{"", "", "lookup"}, {"", "", "LOOKUP"}},
     "Lookup",
     ".lookup"},
    {"that of the application before another schema's",
     {{"", "archive", "Lookup"}, {"", "dbo", "Lookup"}, {"", "sales", "Lookup"}},
     "Lookup",
     "dbo.Lookup"},
    {"that of the application in another case",
     {{"", "archive", "Lookup"}, {"", "DBO", "LOOKUP"}},
     "Lookup",
     "DBO.LOOKUP"},
    {"of two of the application the one that is written so",
     {{"", "dbo", "LOOKUP"}, {"", "dbo", "Lookup"}},
     "Lookup",
     "dbo.Lookup"},
    {"of other schemas the first",
     {{"", "a", "Lookup"}, {"", "b", "Lookup"}},
     "Lookup",
     "a.Lookup"},
    {"another name of the application", {{"", "dbo", "Lookups"}}, "Lookup", ""},
    {"no table", {}, "Lookup", ""},
};

TEST(FindTable, TakesTheOneThatIsMeant) {
  for (const FindCase& row : kFindCases) {
    SCOPED_TRACE(row.what);
    std::vector<odbc::OdbcTable> tables;
    for (const odbc::TableName& name : row.tables) tables.push_back({.name = name});
    const std::optional<odbc::OdbcTable> found = FindTable(tables, row.name);
    EXPECT_EQ(found ? found->name.schema + "." + found->name.name : "", row.found);
  }
}

}  // namespace
}  // namespace zent
