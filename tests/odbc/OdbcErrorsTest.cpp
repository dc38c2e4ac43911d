#include <gtest/gtest.h>

#include "odbc/OdbcErrors.h"

namespace zent::odbc {
namespace {

struct ErrorCase {
  const char* what;
  int native_error;
  const char* sqlstate;
  const char* message;
  FaultKind kind;
  int number;
  const char* description;
  const char* source;
};

constexpr ErrorCase kErrorCases[] = {
    {"a server's own", 1064, "42000", "[ma-3.1.15][10.11.6]You have an error", FaultKind::Other,
     1064, "You have an error", "[ma-3.1.15][10.11.6]"},
    {"without a number", 0, "HY000", "[unixODBC] General error", FaultKind::Other, kCallFailed,
     "General error", "[unixODBC]"},
    {"login of any server", 1045, "28000", "[x]Access denied", FaultKind::LoginFailed, kLoginFailed,
     "Access denied", "[x]"},
    {"login without a number", 0, "28000", "Access denied", FaultKind::LoginFailed, kLoginFailed,
     "Access denied", ""},
    {"login timeout", 0, "HYT00", "[x]Timeout", FaultKind::TimedOut, kServerTimeout,
     "The server did not answer in time. Timeout", "[x]"},
    {"connection timeout", 0, "HYT01", "[x]Timeout", FaultKind::TimedOut, kServerTimeout,
     "The server did not answer in time. Timeout", "[x]"},
    {"lost", 2013, "08S01", "[x]Lost connection", FaultKind::ConnectionLost, 2013,
     "The connection to the server was lost. Lost connection", "[x]"},
    {"not open", 0, "08003", "[x]Not open", FaultKind::ConnectionLost, kConnectionFailed,
     "The connection to the server was lost. Not open", "[x]"},
    {"not made", 17, "08001", "[x]No server", FaultKind::ConnectionFailed, 17,
     "A connection to the server could not be made. No server", "[x]"},
    {"a message of brackets alone", 5, "HY000", "[x][y]", FaultKind::Other, 5, "", "[x][y]"},
    {"a bracket that does not close", 5, "HY000", "[x rest", FaultKind::Other, 5, "[x rest", ""},
    {"a negative number", -3, "HY000", "m", FaultKind::Other, -3, "m", ""},
    {"nothing at all", 0, "", "", FaultKind::Other, kCallFailed, "", ""},
};

TEST(OdbcErrors, TellNumberTextAndSource) {
  for (const ErrorCase& row : kErrorCases) {
    SCOPED_TRACE(row.what);
    const OdbcError error = MakeOdbcError(row.native_error, row.sqlstate, row.message);
    EXPECT_EQ(KindOfState(row.sqlstate), row.kind);
    EXPECT_EQ(error.source, row.source);
    EXPECT_EQ(error.sqlstate, row.sqlstate);
    const RuntimeError told = ErrorOf({error, MakeOdbcError(99, "HY000", "a second one")});
    EXPECT_EQ(told.number, row.number);
    EXPECT_EQ(told.description, row.description);
    EXPECT_EQ(told.source, "ODBC");
  }
}

struct LostCase {
  const char* what;
  int native_error;
  const char* sqlstate;
  const char* message;
  const char* told;
};

constexpr LostCase kLostCases[] = {
    {"a broken write", 5014, "HY000", "[ma-3.1.15]Write error: Broken pipe (32)", "08S01"},
    {"a server that has gone", 2006, "HY000", "[ma-3.1.15]Server has gone away", "08S01"},
    {"another state is kept", 2006, "42000", "[ma-3.1.15]x", "42000"},
    {"another number", 2002, "HY000", "[ma-3.1.15]Can't connect", "HY000"},
    {"another driver's number", 5014, "HY000", "[Microsoft][ODBC Driver]x", "HY000"},
};

TEST(OdbcErrors, KnowABrokenConnectionOfTheDriverThatHidesItsState) {
  for (const LostCase& row : kLostCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(MakeOdbcError(row.native_error, row.sqlstate, row.message).sqlstate, row.told);
  }
}

TEST(OdbcErrors, AFailureWithoutRecordsIsAnErrorAllTheSame) {
  EXPECT_EQ(ErrorOf({}).number, kCallFailed);
  EXPECT_NE(ErrorOf({}).description, "");
}

}  // namespace
}  // namespace zent::odbc
