#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "app/host/OwnFile.h"
#include "base/Status.h"

namespace zent {

/// A file of the host that a run's record goes to, line by line as things happen, so that it tells
/// the story up to the instant at which the run is killed. A run never fails for its record: when a
/// write fails, nothing more is written, and the file remembers it.
class RecordFile {
 public:
  /// Creates or empties the file. Error: kPathFileAccess.
  static Result<RecordFile> Create(const std::string& path);

  void Write(std::string_view text);

  const std::string& path() const { return path_; }
  /// Whether a write has failed.
  bool failed() const { return failed_; }

 private:
  RecordFile(std::string path, OwnFile file) : path_(std::move(path)), file_(std::move(file)) {}

  std::string path_;
  OwnFile file_;
  bool failed_ = false;
};

}  // namespace zent
