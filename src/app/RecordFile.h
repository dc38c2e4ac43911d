#pragma once

#include <fstream>
#include <string>
#include <string_view>

#include "base/Status.h"

namespace zent {

/// A file of the host that a run's record goes to, line by line as things happen, so that it tells
/// the story up to the instant at which the run is killed. A run never fails for its record: when a
/// write fails, standard error hears of it once.
class RecordFile {
 public:
  /// Creates or empties the file. Error: kPathFileAccess.
  static Result<RecordFile> Create(const std::string& path);

  void Write(std::string_view text);

 private:
  RecordFile(std::string path, std::ofstream file)
      : path_(std::move(path)), file_(std::move(file)) {}

  std::string path_;
  std::ofstream file_;
};

}  // namespace zent
