#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/RuntimeError.h"

namespace zent::odbc {

/// Numbers of errors that the engine raises itself; they are DAO's. What a server says keeps the
/// server's own number.
inline constexpr int kNumericOverflow = 3349;
inline constexpr int kUpdateWithoutEdit = 3020;
inline constexpr int kNoCurrentRecord = 3021;
inline constexpr int kReadOnly = 3027;
inline constexpr int kCallFailed = 3146;        ///< a server error without a number
inline constexpr int kConnectionFailed = 3151;  ///< could not be made, or was lost
inline constexpr int kNoDriverManager = 3154;
inline constexpr int kWriteConflict = 3197;  ///< the row is no longer as it was read
inline constexpr int kServerTimeout = 3234;
inline constexpr int kItemNotFound = 3265;
inline constexpr int kDataTypeConversion = 3421;
/// SQL Server's number for a refused login; counts for every server.
inline constexpr int kLoginFailed = 18456;

/// One diagnostic record of the driver.
struct OdbcError {
  int number = 0;        ///< the server's own number ("native error"); 18456 for a refused login
  std::string sqlstate;  ///< five characters
  std::string message;   ///< without the brackets that name its source; no passwords
  std::string source;    ///< who says it: "[ma-3.1.15][10.11.6-MariaDB]"
  bool operator==(const OdbcError&) const = default;
};

/// The records of one failed call, the first raised first.
using OdbcErrorList = std::vector<OdbcError>;

enum class FaultKind { Other, LoginFailed, TimedOut, ConnectionLost, ConnectionFailed };

/// What a SQLSTATE means: 28000, HYT00 and HYT01, 08S01, the rest of class 08.
FaultKind KindOfState(std::string_view sqlstate);

/// A record as the driver gave it, with the source taken off its message, and 18456 as the number
/// of a refused login, so that credentials are asked for whatever the server is.
OdbcError MakeOdbcError(int native_error, std::string_view sqlstate, std::string_view message);

/// The first record as one error: its number (kCallFailed where it has none; kServerTimeout or
/// kConnectionFailed where it has none of these), a plain sentence before the driver's own words
/// for timeouts and connections, source "ODBC". Without records: kCallFailed.
RuntimeError ErrorOf(const OdbcErrorList& errors);

/// An error of the engine itself, source "ODBC".
RuntimeError EngineError(int number, std::string description);

}  // namespace zent::odbc
