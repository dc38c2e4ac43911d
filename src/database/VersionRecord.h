#pragma once

#include <optional>
#include <string>

#include "base/Status.h"
#include "database/port/OpenedDatabase.h"
#include "driver/run/UpdateRun.h"

namespace zent {

/// The version that a database says it has: the field "Version" in the first row of its table
/// "version", without the blanks around it. Nothing when the table, a row or the field is missing,
/// or the table is a link: such a database differs from every other.
Result<std::optional<std::string>> ReadVersionRecord(UpdateRun& run, OpenedDatabase& database);

}  // namespace zent
