#pragma once

#include <filesystem>
#include <string>

#include "platform/win32/UniqueHandle.h"

namespace zent::testing {

/// The program hold_file, which lies beside the test program.
std::filesystem::path HoldProgram();

/// Another process that holds a file, as a mode of hold_file says, from the end of the constructor
/// on until it is destroyed. In the mode "run" the file is a copy of HoldProgram().
class HoldingProcess {
 public:
  HoldingProcess(const std::filesystem::path& file, const std::string& mode);
  ~HoldingProcess();
  HoldingProcess(const HoldingProcess&) = delete;
  HoldingProcess& operator=(const HoldingProcess&) = delete;

  /// False when the file could not be held.
  bool ok() const { return ok_; }
  /// The number of the process.
  unsigned long id() const { return id_; }
  /// Ends the process wherever it is.
  void Kill();

 private:
  UniqueHandle process_;
  UniqueHandle input_;  // closed to end it
  unsigned long id_ = 0;
  bool ok_ = false;
};

}  // namespace zent::testing
