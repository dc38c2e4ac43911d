#pragma once

#include <cstdint>
#include <string_view>

#include "base/Status.h"

namespace zent::jet {

struct DatabaseCore;

/// Runs a statement that changes something, as a whole, and returns how many rows it changed.
/// kSelectNotExecuted for a query.
///
/// A file that it names (IN "path") may be one that the same workspace has open, as shared as it
/// is; another one is opened for the statement. The rows that go there are committed first.
Result<std::int64_t> RunStatement(DatabaseCore& core, std::string_view statement);

}  // namespace zent::jet
