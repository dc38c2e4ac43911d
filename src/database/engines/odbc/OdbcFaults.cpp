#include "database/engines/odbc/OdbcFaults.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zent {
namespace {

constexpr std::string_view kIntegrityViolated = "23000";
/// What servers say of a key that is there already; the state alone also stands for a missing value
/// and the like. Oracle's; MariaDB's; SQL Server's for an index and for a constraint.
constexpr std::array kDuplicateKeys = {1, 1062, 1586, 2601, 2627};

struct StateRow {
  std::string_view state;
  int number;
};

constexpr StateRow kStates[] = {
    {"42S02", kEngineNoSuchTable},
    {"S0002", kEngineNoSuchTable},  // of the second version of the interface
    {"22001", kEngineTextTooLong},
};

}  // namespace

EngineErrors FromOdbc(const odbc::OdbcErrorList& errors) {
  EngineErrors told;
  for (const odbc::OdbcError& error : errors) {
    told.push_back({.number = error.number == 0 ? kEngineServerCallFailed : error.number,
                    .description = error.message,
                    .source = error.source,
                    .sqlstate = error.sqlstate});
  }
  return told;
}

int PortNumber(const odbc::OdbcError& first, int number) {
  for (const StateRow& row : kStates) {
    if (first.sqlstate == row.state) return row.number;
  }
  const bool duplicate =
      first.sqlstate == kIntegrityViolated &&
      std::find(kDuplicateKeys.begin(), kDuplicateKeys.end(), first.number) != kDuplicateKeys.end();
  return duplicate ? kEngineDuplicateKey : number;
}

RuntimeError OdbcFaults::Told(const RuntimeError& error) {
  RuntimeError told = error;
  told.source = kEngineSource;
  // The engine's own errors leave the driver's records of an earlier one where they are.
  const odbc::OdbcErrorList& records = environment_.errors();
  const bool from_driver =
      !records.empty() && odbc::ErrorOf(records).description == error.description;
  errors_ = from_driver ? FromOdbc(records) : EngineErrors();
  if (from_driver) told.number = PortNumber(records.front(), error.number);
  return told;
}

}  // namespace zent
