#include "odbc/OdbcEnvironment.h"

#include <utility>

#include "odbc/OdbcCalls.h"
#include "odbc/OdbcConnection.h"
#include "odbc/OdbcSession.h"

namespace zent::odbc {

OdbcEnvironment::OdbcEnvironment(std::unique_ptr<OdbcCalls> calls) : calls_(std::move(calls)) {}
OdbcEnvironment::~OdbcEnvironment() = default;

Result<std::unique_ptr<OdbcEnvironment>> OdbcEnvironment::Create(std::unique_ptr<OdbcCalls> calls) {
  std::unique_ptr<OdbcEnvironment> made(new OdbcEnvironment(std::move(calls)));
  OdbcSession session{*made->calls_, made->errors_, {}};
  Result<OdbcHandle> handle = AllocateHandle(session, SQL_HANDLE_ENV, OdbcHandle());
  if (!handle.ok()) return handle.error();
  made->handle_ = std::move(handle.value());
  const SQLRETURN code = made->calls_->set_env_attr(made->handle_.get(), SQL_ATTR_ODBC_VERSION,
                                                    AsPointer(SQL_OV_ODBC3), SQL_IS_UINTEGER);
  if (Status set = session.Check(made->handle_, code); !set.ok()) return set.error();
  return made;
}

Result<std::unique_ptr<OdbcConnection>> OdbcEnvironment::Connect(std::string_view connect_text,
                                                                 int login_timeout) {
  errors_.clear();
  return OdbcConnection::Open(OdbcSession{*calls_, errors_, std::string(connect_text)}, handle_,
                              login_timeout);
}

}  // namespace zent::odbc
