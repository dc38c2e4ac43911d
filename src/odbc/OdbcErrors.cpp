#include "odbc/OdbcErrors.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zent::odbc {
namespace {

constexpr const char* kSource = "ODBC";

/// The length of the bracketed names at the start of a message: "[vendor][driver][server]".
std::size_t SourceLength(std::string_view message) {
  std::size_t length = 0;
  while (length < message.size() && message[length] == '[') {
    const std::size_t end = message.find(']', length);
    if (end == std::string_view::npos) break;
    length = end + 1;
  }
  return length;
}

/// MariaDB's driver gives a broken connection the state of any error when it breaks while the
/// driver writes or reads.
constexpr std::string_view kMariaDbDriver = "[ma-";
constexpr std::string_view kAnyError = "HY000";
constexpr std::array kMariaDbLost = {2006, 2013, 2055, 5013, 5014};

bool IsLostByNumber(const OdbcError& error) {
  return error.sqlstate == kAnyError && error.source.rfind(kMariaDbDriver, 0) == 0 &&
         std::find(kMariaDbLost.begin(), kMariaDbLost.end(), error.number) != kMariaDbLost.end();
}

struct KindRow {
  FaultKind kind;
  int number_for_none;
  const char* sentence;
};

constexpr KindRow kKinds[] = {
    {FaultKind::Other, kCallFailed, ""},
    {FaultKind::LoginFailed, kLoginFailed, ""},
    {FaultKind::TimedOut, kServerTimeout, "The server did not answer in time. "},
    {FaultKind::ConnectionLost, kConnectionFailed, "The connection to the server was lost. "},
    {FaultKind::ConnectionFailed, kConnectionFailed,
     "A connection to the server could not be made. "},
};

}  // namespace

FaultKind KindOfState(std::string_view sqlstate) {
  if (sqlstate == "28000") return FaultKind::LoginFailed;
  if (sqlstate == "HYT00" || sqlstate == "HYT01") return FaultKind::TimedOut;
  // 08003 is a call on a connection that is not, or no longer, open.
  if (sqlstate == "08S01" || sqlstate == "08003" || sqlstate == "08007") {
    return FaultKind::ConnectionLost;
  }
  if (sqlstate.substr(0, 2) == "08") return FaultKind::ConnectionFailed;
  return FaultKind::Other;
}

OdbcError MakeOdbcError(int native_error, std::string_view sqlstate, std::string_view message) {
  OdbcError error;
  error.number = KindOfState(sqlstate) == FaultKind::LoginFailed ? kLoginFailed : native_error;
  error.sqlstate = sqlstate;
  const std::size_t length = SourceLength(message);
  error.source = message.substr(0, length);
  message.remove_prefix(length);
  const std::size_t start = message.find_first_not_of(' ');
  if (start != std::string_view::npos) error.message = message.substr(start);
  if (IsLostByNumber(error)) error.sqlstate = "08S01";
  return error;
}

RuntimeError ErrorOf(const OdbcErrorList& errors) {
  if (errors.empty()) return EngineError(kCallFailed, "The driver failed and gave no reason.");
  const OdbcError& first = errors.front();
  const FaultKind kind = KindOfState(first.sqlstate);
  for (const KindRow& row : kKinds) {
    if (row.kind != kind) continue;
    const int number = first.number != 0 ? first.number : row.number_for_none;
    return EngineError(number, row.sentence + first.message);
  }
  return EngineError(kCallFailed, first.message);
}

RuntimeError EngineError(int number, std::string description) {
  return RuntimeError{number, std::move(description), kSource};
}

}  // namespace zent::odbc
