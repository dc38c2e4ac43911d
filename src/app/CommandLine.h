#pragma once

#include <optional>
#include <string>
#include <variant>

namespace zent {

/// Which window a run speaks through.
enum class WindowChoice { Default, Window, Console };

/// What the command line asks for. Paths are the host's own.
struct CommandLine {
  std::string package;  ///< empty: the default folder of the system
  std::string machine;  ///< empty: the default machine of the system
  WindowChoice window = WindowChoice::Default;
  bool unattended = false;
  std::string answers;  ///< file of answers; empty for none
  int retries = 0;
  std::string log;     ///< file; empty for none
  std::string events;  ///< file; empty for none
  bool strict = false;
  bool detailed_exitcode = false;
  bool follow_profile_links = false;
};

/// What is to be printed instead of a run: help, the version, or what is wrong with the line.
struct CommandLineEnd {
  std::string text;
  bool wrong = false;  ///< the line is wrong: the text belongs on standard error
};

/// Parses the arguments. `parts` tells, behind the version, what this build is made of.
std::variant<CommandLine, CommandLineEnd> ParseCommandLine(int argc, const char* const* argv,
                                                           const std::string& parts);

}  // namespace zent
