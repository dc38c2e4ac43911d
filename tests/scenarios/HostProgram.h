#pragma once

#include <string>
#include <vector>

namespace zent::testing {

/// How a program of the host ended, and what it wrote.
struct ProgramEnd {
  int exit_code = -1;  ///< 128 and the signal's number when a signal ended it
  std::string output;  ///< standard output and standard error, as they came
};

/// Runs a program to its end, with nothing on standard input. `folder` is its current folder.
ProgramEnd RunHostProgram(const std::vector<std::string>& arguments, const std::string& folder);

}  // namespace zent::testing
