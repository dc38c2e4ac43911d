#pragma once

#include <cstdint>
#include <string>

#include "base/Status.h"

namespace zent {

/// A program start.
struct Launch {
  std::string program;       ///< the full Windows path, without quotes
  std::string arguments;     ///< as they follow the program on the command line
  std::string command_line;  ///< the line as the command gives it, for the record
};

/// Starts of other programs.
class Processes {
 public:
  virtual ~Processes() = default;

  /// Starts the program minimised with the focus, in its own folder, and goes on at once. The
  /// program is the file of that path (or of that path and ".exe", when only that exists), never
  /// searched for. Returns the task identifier. Errors: kFileNotFound, kPathNotFound,
  /// kInvalidProcedureCall (not a program), kPermissionDenied.
  virtual Result<std::uint32_t> Start(const Launch& launch) = 0;
};

}  // namespace zent
