#pragma once

#include "base/Status.h"
#include "database/port/EngineErrors.h"
#include "odbc/OdbcEnvironment.h"

namespace zent {

/// What a driver said of one failed call, as the port has it.
EngineErrors FromOdbc(const odbc::OdbcErrorList& errors);

/// The number of an error that the updater looks at whatever the server is: a missing table, a key
/// that is there already, a text that is too long. Else `number` as it is.
int PortNumber(const odbc::OdbcError& first, int number);

/// Tells the errors of one environment, its connections and their statements in the port's terms,
/// and keeps what the driver said of the last one.
class OdbcFaults {
 public:
  /// `environment` outlives this.
  explicit OdbcFaults(const odbc::OdbcEnvironment& environment) : environment_(environment) {}

  RuntimeError Told(const RuntimeError& error);
  Status Told(const Status& status) { return status.ok() ? Status() : Told(status.error()); }
  template <typename T>
  Result<T> Told(Result<T> result) {
    if (result.ok()) return result;
    return Told(result.error());
  }

  /// Of the last error told; empty when it was not the driver's.
  const EngineErrors& errors() const { return errors_; }

 private:
  const odbc::OdbcEnvironment& environment_;
  EngineErrors errors_;
};

}  // namespace zent
