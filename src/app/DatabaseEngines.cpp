#include "app/DatabaseEngines.h"

#include <utility>

#include "jet/format/ValueText.h"
#include "odbc/LoadOdbc.h"
#include "odbc/OdbcEnvironment.h"

namespace zent {
namespace {

jet::Date DateOf(const LocalTime& time) {
  return jet::JoinDate({.year = time.year,
                        .month = time.month,
                        .day = time.day,
                        .hour = time.hour,
                        .minute = time.minute,
                        .second = time.second % 60})
      .value_or(jet::Date());
}

Result<std::unique_ptr<odbc::OdbcEnvironment>> SystemOdbc() {
  Result<std::unique_ptr<odbc::OdbcCalls>> calls = odbc::LoadOdbc();
  if (!calls.ok()) return calls.error();
  return odbc::OdbcEnvironment::Create(std::move(calls.value()));
}

}  // namespace

DatabaseEngines::DatabaseEngines(jet::Storage& files, Clock& clock, std::string computer)
    : access_(files, {.user = {.computer = std::move(computer)},
                      .now = [&clock] { return DateOf(clock.Now()); }}),
      server_(SystemOdbc) {}

}  // namespace zent
