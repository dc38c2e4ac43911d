#include "odbc/OdbcSession.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "odbc/ConnectText.h"
#include "odbc/WideText.h"

namespace zent::odbc {
namespace {

constexpr SQLSMALLINT kMostRecords = 64;
constexpr std::size_t kMessageUnits = 4096;
constexpr std::size_t kStateUnits = 6;

bool MeansLost(const OdbcErrorList& errors) {
  return std::any_of(errors.begin(), errors.end(), [](const OdbcError& error) {
    return KindOfState(error.sqlstate) == FaultKind::ConnectionLost;
  });
}

bool MeansUndone(const OdbcErrorList& errors) {
  return std::any_of(errors.begin(), errors.end(),
                     [](const OdbcError& error) { return error.sqlstate == "40001"; });
}

std::size_t TextLength(const std::vector<SQLWCHAR>& text) {
  return static_cast<std::size_t>(std::find(text.begin(), text.end(), 0) - text.begin());
}

}  // namespace

OdbcErrorList ReadErrors(const OdbcCalls& calls, const OdbcHandle& handle,
                         const std::string& connect_text) {
  OdbcErrorList errors;
  for (SQLSMALLINT record = 1; record <= kMostRecords; ++record) {
    std::vector<SQLWCHAR> state(kStateUnits);
    std::vector<SQLWCHAR> message(kMessageUnits);
    SQLINTEGER native_error = 0;
    SQLSMALLINT length = 0;
    const SQLRETURN code =
        calls.get_diag_rec(handle.type(), handle.get(), record, state.data(), &native_error,
                           message.data(), static_cast<SQLSMALLINT>(message.size()), &length);
    if (!SQL_SUCCEEDED(code)) break;
    // The length given is that of the whole message; what is there ends with a zero.
    const std::string text = FromWide(message, TextLength(message));
    errors.push_back(MakeOdbcError(native_error, FromWide(state, kStateUnits - 1),
                                   HidePassword(text, connect_text)));
  }
  return errors;
}

Status OdbcSession::Check(const OdbcHandle& handle, SQLRETURN code) {
  if (SQL_SUCCEEDED(code)) return {};
  errors = ReadErrors(calls, handle, connect_text);
  lost = lost || MeansLost(errors);
  undone = undone || (in_transaction && MeansUndone(errors));
  return ErrorOf(errors);
}

Status OdbcSession::CheckOpen() {
  if (lost) {
    errors.assign(1, MakeOdbcError(0, "08S01", "It has to be opened again."));
  } else if (undone) {
    errors.assign(1, MakeOdbcError(0, "40001", "The server has rolled the transaction back."));
  } else {
    return {};
  }
  return ErrorOf(errors);
}

Result<OdbcHandle> AllocateHandle(OdbcSession& session, SQLSMALLINT type,
                                  const OdbcHandle& parent) {
  if (Status open = session.CheckOpen(); !open.ok()) return open.error();
  SQLHANDLE handle = nullptr;
  const SQLRETURN code = session.calls.alloc_handle(type, parent.get(), &handle);
  if (Status made = session.Check(parent, code); !made.ok()) return made.error();
  return OdbcHandle(session.calls, type, handle);
}

}  // namespace zent::odbc
