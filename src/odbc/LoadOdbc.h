#pragma once

#include <memory>

#include "base/Status.h"
#include "odbc/OdbcCalls.h"

namespace zent::odbc {

/// The driver manager of this system. It is loaded when it is asked for, not with the program,
/// which so starts on a machine that has none; it stays loaded. Error: kNoDriverManager.
Result<std::unique_ptr<OdbcCalls>> LoadOdbc();

}  // namespace zent::odbc
