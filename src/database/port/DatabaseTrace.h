#pragma once

#include <string_view>

namespace zent {

/// Where trace lines of the database work go, when somebody asked for them.
class DatabaseTrace {
 public:
  virtual ~DatabaseTrace() = default;
  /// Opens the trace file for appending, writes `text`, whole lines with their ends, and closes it.
  /// Work goes on when that fails.
  virtual void Append(std::string_view text) = 0;
};

}  // namespace zent
