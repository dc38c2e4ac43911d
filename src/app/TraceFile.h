#pragma once

#include <string>

#include "database/port/DatabaseTrace.h"

namespace zent {

/// The trace of the database work in a file of the host. It is opened for each line and closed
/// again, so that others can read, move or empty it meanwhile.
class TraceFile final : public DatabaseTrace {
 public:
  /// `path` in UTF-8.
  explicit TraceFile(std::string path) : path_(std::move(path)) {}

  /// Whether the file can be written; it is created when missing, and keeps what it holds.
  bool CanAppend() const;
  void Append(std::string_view text) override;

 private:
  std::string path_;
};

}  // namespace zent
