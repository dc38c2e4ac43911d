#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/engines/odbc/OdbcEngine.h"
#include "database/engines/odbc/OdbcFaults.h"

namespace zent {
namespace {

struct NumberCase {
  const char* what;
  int native;
  const char* sqlstate;
  int number;
};

constexpr NumberCase kNumberCases[] = {
    {"no such table, MariaDB", 1146, "42S02", kEngineNoSuchTable},
    {"no such table, SQL Server", 208, "42S02", kEngineNoSuchTable},
    {"no such table, an old driver", 942, "S0002", kEngineNoSuchTable},
    {"a duplicate key, MariaDB", 1062, "23000", kEngineDuplicateKey},
    {"a duplicate key of an index, SQL Server", 2601, "23000", kEngineDuplicateKey},
    {"a duplicate key of a constraint, SQL Server", 2627, "23000", kEngineDuplicateKey},
    {"a duplicate key, Oracle", 1, "23000", kEngineDuplicateKey},
    {"a missing value", 1048, "23000", 1048},
    {"a row that others refer to", 547, "23000", 547},
    {"a text too long", 1406, "22001", 3163},
    {"a refused login", 18456, "28000", 18456},
    {"any other", 8134, "22012", 8134},
};

TEST(OdbcFaults, HaveTheNumbersThatTheUpdaterLooksAt) {
  for (const NumberCase& row : kNumberCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(PortNumber(odbc::MakeOdbcError(row.native, row.sqlstate, "text"), row.native),
              row.number);
  }
}

TEST(OdbcFaults, AreListedWithTheServersOwnNumbers) {
  const EngineErrors told =
      FromOdbc({odbc::MakeOdbcError(1062, "23000", "[ma][MariaDB]Duplicate entry"),
                odbc::MakeOdbcError(0, "HY000", "no number")});
  ASSERT_EQ(told.size(), 2U);
  EXPECT_EQ(told[0].number, 1062);
  EXPECT_EQ(told[0].description, "Duplicate entry");
  EXPECT_EQ(told[0].source, "[ma][MariaDB]");
  EXPECT_EQ(told[0].sqlstate, "23000");
  EXPECT_EQ(told[1].number, kEngineServerCallFailed);
}

TEST(OdbcEngine, TellsAtTheFirstServerThatThereIsNoDriverManager) {
  int asked = 0;
  OdbcEngine engine([&asked]() -> Result<std::unique_ptr<odbc::OdbcEnvironment>> {
    ++asked;
    return odbc::EngineError(odbc::kNoDriverManager, "There is no ODBC.");
  });
  EXPECT_EQ(asked, 0);
  const auto workspace = engine.CreateWorkspace("NewODBCDirect", 60);
  const auto connected = engine.Connect("DSN=Korvo;", 60);
  EXPECT_EQ(asked, 2);
  ASSERT_FALSE(workspace.ok() || connected.ok());
  EXPECT_EQ(workspace.number(), odbc::kNoDriverManager);
  EXPECT_EQ(connected.error().description, "There is no ODBC.");
  EXPECT_EQ(connected.error().source, kEngineSource);
  EXPECT_TRUE(engine.Errors().empty());
}

}  // namespace
}  // namespace zent
