#pragma once

#include <optional>
#include <string>
#include <variant>

namespace zent {

/// Which window a run speaks through.
enum class WindowChoice { Default, Window, Console };

/// The databases of `convert`, each a file of the host ("mdb") or the connect text of a server.
struct ConversionLine {
  std::string source;    ///< what new values are taken from
  std::string database;  ///< what is converted
};

/// What the command line asks for. Paths are the host's own.
struct CommandLine {
  std::optional<ConversionLine> conversion = std::nullopt;  ///< instead of a package's run
  std::string package;  ///< empty: the default folder of the system
  std::string machine;  ///< empty: the default machine of the system
  WindowChoice window = WindowChoice::Default;
  bool unattended = false;
  std::string answers;  ///< file of answers; empty for none
  int retries = 0;
  std::string log;     ///< file; empty for none
  std::string events;  ///< file; empty for none
  std::string trace;   ///< file for the trace of the database work; empty for none
  bool strict = false;
  bool detailed_exitcode = false;
  bool follow_profile_links = false;
};

/// Whose form of a statement is asked for.
enum class SqlDialect { Access, SqlServer, Oracle };

/// The command line of `translate`.
struct TranslateLine {
  SqlDialect to = SqlDialect::Access;
  std::string statement;
  bool from_input = false;  ///< the statement comes from standard input
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
using ParsedLine = std::variant<CommandLine, TranslateLine, CommandLineEnd>;
ParsedLine ParseCommandLine(int argc, const char* const* argv, const ProgramTexts& texts);

}  // namespace zent
