#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "base/Status.h"

namespace zent {

/// A program start.
struct Launch {
  std::string program;       ///< the full Windows path, without quotes
  std::string arguments;     ///< as they follow the program on the command line
  std::string command_line;  ///< the line as the command gives it, for the record
};

/// How a program ended.
struct ProgramEnd {
  std::uint32_t exit_code = 0;  ///< 128 and the signal, for a host program that one has ended
  /// The beginning of what it wrote to its standard error (ErrorOutput), UTF-8.
  std::string error_text = {};
};

/// A program whose end can be waited for. To destroy this lets go of the program, which runs on.
class RunningProgram {
 public:
  virtual ~RunningProgram() = default;

  /// Waits for the end, `time` at most; nothing while the program runs. To be called now and then:
  /// a program that writes much to its standard error waits until it has been read.
  virtual Result<std::optional<ProgramEnd>> Wait(std::chrono::milliseconds time) = 0;
};

/// Starts of other programs.
class Processes {
 public:
  virtual ~Processes() = default;

  /// Starts the program minimised with the focus, in its own folder, and goes on at once. The
  /// program is the file of that path (or of that path and ".exe", when only that exists), never
  /// searched for. Returns the task identifier. Errors: kFileNotFound, kPathNotFound,
  /// kInvalidProcedureCall (not a program; kFileNotFound in a machine folder, where nothing of that
  /// name could run), kPermissionDenied.
  virtual Result<std::uint32_t> Start(const Launch& launch) = 0;

  /// As Start, for a program whose end matters. Its standard input is empty, its standard output
  /// dropped, its standard error kept.
  virtual Result<std::unique_ptr<RunningProgram>> StartWaited(const Launch& launch) = 0;
};

}  // namespace zent
