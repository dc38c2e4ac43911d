#pragma once

#include <optional>
#include <string>

#include "base/Status.h"
#include "driver/run/UpdateRun.h"

namespace zent {

/// The rule of a long conversion that nobody can take back half-way: a statement that fails shows
/// its error in a box, and the next one runs.
class NextStatement {
 public:
  explicit NextStatement(UpdateRun& run) : run_(run) {}

  /// Whether the statement succeeded.
  bool After(const Status& statement);
  /// What the statement gave; nothing when it failed.
  template <typename T>
  std::optional<T> After(Result<T> statement) {
    if (statement.ok()) return std::move(statement.value());
    After(Status(statement.error()));
    return std::nullopt;
  }

 private:
  UpdateRun& run_;
};

}  // namespace zent
