#pragma once

#include <string>
#include <string_view>

#include "driver/run/UpdateRun.h"

namespace zent {

/// `statement` for the kind of database that was opened last. Whether a server is Oracle is read
/// from the settings anew each time.
std::string TranslateSQL(const UpdateRun& run, std::string_view statement);

}  // namespace zent
