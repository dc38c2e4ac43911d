#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "odbc/OdbcConnection.h"
#include "odbc/OdbcEnvironment.h"
#include "odbc/OdbcErrors.h"
#include "odbc/WideText.h"

/// Servers that keep the numbers of changed rows to themselves.
namespace zent::odbc {
namespace {

/// What the driver says, and what it was asked to run.
struct Driver {
  std::string server;
  bool refuses_settings = false;
  SQLLEN rows = 1;  ///< of each statement
  std::vector<std::string> statements = {};
};

/// The calls take no context of a test's own.
Driver& TheDriver() {
  static Driver driver;
  return driver;
}

SQLRETURN SQL_API Allocate(SQLSMALLINT, SQLHANDLE, SQLHANDLE* handle) {
  *handle = AsPointer(1);
  return SQL_SUCCESS;
}
SQLRETURN SQL_API Free(SQLSMALLINT, SQLHANDLE) { return SQL_SUCCESS; }
SQLRETURN SQL_API SetEnvironment(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER) {
  return SQL_SUCCESS;
}
SQLRETURN SQL_API SetConnection(SQLHDBC, SQLINTEGER, SQLPOINTER, SQLINTEGER) { return SQL_SUCCESS; }
SQLRETURN SQL_API Connect(SQLHDBC, SQLHWND, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT,
                          SQLSMALLINT*, SQLUSMALLINT) {
  return SQL_SUCCESS;
}
SQLRETURN SQL_API Disconnect(SQLHDBC) { return SQL_SUCCESS; }

/// The name of the server alone: every other fact is empty, or 0.
SQLRETURN SQL_API TellFact(SQLHDBC, SQLUSMALLINT fact, SQLPOINTER buffer, SQLSMALLINT,
                           SQLSMALLINT*) {
  if (fact != SQL_DBMS_NAME) return SQL_SUCCESS;
  const std::vector<SQLWCHAR> name = ToWide(TheDriver().server);
  std::memcpy(buffer, name.data(), name.size() * sizeof(SQLWCHAR));
  return SQL_SUCCESS;
}
SQLRETURN SQL_API TellNoError(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLWCHAR*, SQLINTEGER*,
                              SQLWCHAR*, SQLSMALLINT, SQLSMALLINT*) {
  return SQL_NO_DATA;
}
SQLRETURN SQL_API Run(SQLHSTMT, SQLWCHAR* text, SQLINTEGER length) {
  const std::vector<SQLWCHAR> wide(text, text + length);
  TheDriver().statements.push_back(FromWide(wide, wide.size()));
  const bool is_setting = TheDriver().statements.back().starts_with("SET ");
  return is_setting && TheDriver().refuses_settings ? SQL_ERROR : SQL_SUCCESS;
}
SQLRETURN SQL_API TellRows(SQLHSTMT, SQLLEN* rows) {
  *rows = TheDriver().rows;
  return SQL_SUCCESS;
}
SQLRETURN SQL_API TellColumns(SQLHSTMT, SQLSMALLINT* count) {
  *count = 0;
  return SQL_SUCCESS;
}
SQLRETURN SQL_API TellNoMore(SQLHSTMT) { return SQL_NO_DATA; }

std::unique_ptr<OdbcEnvironment> MakeEnvironment() {
  auto calls = std::make_unique<OdbcCalls>();
  calls->alloc_handle = Allocate;
  calls->free_handle = Free;
  calls->set_env_attr = SetEnvironment;
  calls->set_connect_attr = SetConnection;
  calls->driver_connect = Connect;
  calls->disconnect = Disconnect;
  calls->get_info = TellFact;
  calls->get_diag_rec = TellNoError;
  calls->exec_direct = Run;
  calls->row_count = TellRows;
  calls->num_result_cols = TellColumns;
  calls->more_results = TellNoMore;
  return std::move(OdbcEnvironment::Create(std::move(calls)).value());
}

struct SettingCase {
  const char* what;
  Driver driver;
  std::vector<std::string> statements;
};

TEST(RowCount, IsAskedForWhereAnOptionOfTheServerHidesIt) {
  const SettingCase cases[] = {
      {"SQL Server", {.server = "Microsoft SQL Server"}, {"SET NOCOUNT OFF"}},
      {"one that refuses it",
       {.server = "Microsoft SQL Server", .refuses_settings = true},
       {"SET NOCOUNT OFF"}},
      {"any other", {.server = "MariaDB"}, {}},
  };
  for (const SettingCase& row : cases) {
    SCOPED_TRACE(row.what);
    TheDriver() = row.driver;
    const auto environment = MakeEnvironment();
    EXPECT_TRUE(environment->Connect("DSN=Korvo;", 15).ok());
    EXPECT_EQ(TheDriver().statements, row.statements);
  }
}

struct CountCase {
  const char* what;
  SQLLEN rows;
  std::int64_t told;  ///< -1: an error where the number matters, and 0 elsewhere
};

TEST(RowCount, ThatIsNotToldIsAnErrorWhereItMatters) {
  constexpr CountCase kCases[] = {
      {"a row", 1, 1},
      {"no row", 0, 0},
      {"not told", -1, -1},
  };
  for (const CountCase& row : kCases) {
    SCOPED_TRACE(row.what);
    TheDriver() = {.server = "MariaDB", .rows = row.rows};
    const auto environment = MakeEnvironment();
    const auto connection = std::move(environment->Connect("DSN=Korvo;", 15).value());
    EXPECT_EQ(connection->Execute("UPDATE T SET a=1").value_or(99), std::max<SQLLEN>(row.rows, 0));
    const Result<std::int64_t> counted = connection->ExecuteCounted("UPDATE T SET a=1");
    EXPECT_EQ(counted.value_or(-1), row.told);
    EXPECT_EQ(counted.number(), row.told < 0 ? kCallFailed : 0);
  }
}

}  // namespace
}  // namespace zent::odbc
