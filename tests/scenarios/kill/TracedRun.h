#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zent::testing {

/// Which program to run, and where it is to be watched.
struct TracedProgram {
  std::vector<std::string> arguments;  ///< the program first
  std::filesystem::path folder;        ///< calls that change files elsewhere do not count
};

/// How a watched program ended.
struct TracedEnd {
  std::string error;               ///< why it could not be watched; empty when it was
  std::vector<std::string> calls;  ///< the changing calls that it came to, in order
  bool killed = false;             ///< before the last of `calls` took effect
  int exit_code = -1;              ///< when it was not killed
};

/// Runs the program to its end, or kills it right before its `kill_at`-th changing call (from 1 on;
/// 0 is never), so that the call does not take effect. Its output is dropped. Under the address
/// sanitizer it does not look for leaks, which cannot be done in a watched program.
TracedEnd RunTraced(const TracedProgram& program, std::size_t kill_at = 0);

}  // namespace zent::testing
