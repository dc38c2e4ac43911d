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

/// What is to be told instead of a run: help, the version, or what is wrong with the line.
struct CommandLineEnd {
  std::string text;
  bool wrong = false;  ///< the line is wrong: the text is a complaint
};

/// What differs between the systems in what the command line says and takes.
struct ProgramTexts {
  std::string parts;            ///< behind the version: what this build is made of
  std::string default_package;  ///< the folder taken without PACKAGE: "the current folder"
  bool takes_machine = true;    ///< the machine is a folder, not the system itself
};

/// Parses the arguments, which are UTF-8. The exit codes in the help are the system's own.
std::variant<CommandLine, CommandLineEnd> ParseCommandLine(int argc, const char* const* argv,
                                                           const ProgramTexts& texts);

}  // namespace zent
