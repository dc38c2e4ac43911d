#pragma once

#include <filesystem>

#include "base/Status.h"

namespace zent {

/// A machine with nothing on it, for work that needs none: a temporary folder that goes with this.
class EmptyMachine {
 public:
  EmptyMachine() = default;
  ~EmptyMachine();
  EmptyMachine(const EmptyMachine&) = delete;
  EmptyMachine& operator=(const EmptyMachine&) = delete;

  /// Makes it; once.
  Status Make();
  /// Empty until it has been made.
  const std::filesystem::path& folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
};

}  // namespace zent
