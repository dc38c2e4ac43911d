#include "app/CommandLine.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "app/ExitCode.h"
#include "driver/run/Product.h"

namespace zent {
namespace {

constexpr const char* kDescription = "ZentUpdate applies an update package to an installed Korvo.";

/// The exit codes of this system, as the help tells them.
std::string ExitCodeText() {
  const auto number = [](ExitCode code) { return NativeExitCode(code); };
  return fmt::format(
      "Exit codes: {} success; {} success, restart needed; {} success with warnings\n"
      "(--detailed-exitcode); {} setup failed; {} wrong command line; {} no package;\n"
      "{} the application is not installed; {} the machine is in use; {} refused by --strict.\n",
      number(ExitCode::Success), number(ExitCode::RestartNeeded),
      number(ExitCode::SuccessWithWarnings), number(ExitCode::Failed),
      number(ExitCode::WrongCommandLine), number(ExitCode::NoPackage),
      number(ExitCode::NotInstalled), number(ExitCode::MachineInUse),
      number(ExitCode::RefusedByStrict));
}

void AddWindowOptions(CLI::App& app, CommandLine& line, bool& window, bool& console) {
  auto* const window_flag =
      app.add_flag("--window", window, "Show the window (the default with a display)");
  auto* const console_flag =
      app.add_flag("--console", console, "Use the terminal (the default without a display)");
  window_flag->excludes(console_flag);
  app.add_flag("--unattended", line.unattended,
               "Answer every question with its safe answer: Cancel, No, Continue");
  app.add_option("--answers", line.answers,
                 "Answers, one a line: retry, cancel, yes, no, continue, text:...")
      ->type_name("FILE");
  app.add_option("--retries", line.retries, "Unattended: answer Retry so many times first")
      ->check(CLI::Range(0, 1000))
      ->type_name("N");
}

void AddRecordOptions(CLI::App& app, CommandLine& line) {
  app.add_option("--log", line.log, "Write the message box's whole text to a file, in UTF-8")
      ->type_name("FILE");
  app.add_option("--events", line.events, "Write what happens to a file, one JSON object a line")
      ->type_name("FILE");
  app.add_flag("--strict", line.strict,
               "Refuse what a plain run only tolerates: unknown keywords and path macros,\n"
               "text swallowed behind a path macro, a source outside the package, a wildcard\n"
               "delete on a relative path");
  app.add_flag("--detailed-exitcode", line.detailed_exitcode,
               "Return 10 when the run succeeds but a command was warned or failed");
}

void AddMachineOptions(CLI::App& app, CommandLine& line, bool shown) {
  // Known where they are refused as well, so that they can be refused in words.
  const std::string group = shown ? "Options" : "";
  app.add_option("--machine", line.machine,
                 "The machine to service, a folder in the layout of a Wine prefix\n"
                 "(default: $WINEPREFIX, else the user's own prefix)")
      ->type_name("DIR")
      ->group(group);
  app.add_flag("--follow-profile-links", line.follow_profile_links,
               "Let the profile's links (Desktop, Documents, ...) lead to the home folder")
      ->group(group);
}

CommandLineEnd WrongLine(const std::string& what) {
  return {.text = fmt::format("{}\nTry 'zentupdate --help'.", what), .wrong = true};
}

}  // namespace

std::variant<CommandLine, CommandLineEnd> ParseCommandLine(int argc, const char* const* argv,
                                                           const ProgramTexts& texts) {
  CommandLine line;
  bool window = false;
  bool console = false;
  const std::string version =
      fmt::format("{}.{}.{}", kVersionMajor, kVersionMinor, kVersionRevision);

  CLI::App app(kDescription, "zentupdate");
  app.set_version_flag("--version", fmt::format("ZentUpdate {}\n{}", version, texts.parts));
  app.footer(ExitCodeText());
  app.fallthrough();
  app.allow_windows_style_options(false);  // a path may begin with a slash
  app.add_option("PACKAGE", line.package,
                 "Folder of the update package: the one that holds ZentUpdate.ini\n"
                 "(default: " +
                     texts.default_package + ")");
  AddMachineOptions(app, line, texts.takes_machine);
  AddWindowOptions(app, line, window, console);
  AddRecordOptions(app, line);
  auto* const run = app.add_subcommand("run", "Run the package; may be left out");
  run->add_option("PACKAGE", line.package, "Folder of the update package");

  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return CommandLineEnd{.text = app.help()};
  } catch (const CLI::CallForVersion& call) {
    return CommandLineEnd{.text = std::string(call.what()) + "\n"};
  } catch (const CLI::ParseError& error) {
    return WrongLine(error.what());
  }
  if (!texts.takes_machine && (!line.machine.empty() || line.follow_profile_links)) {
    return WrongLine(
        "--machine and --follow-profile-links are not for this system: the machine is "
        "the one that the program runs on");
  }
  if (window) line.window = WindowChoice::Window;
  if (console) line.window = WindowChoice::Console;
  return line;
}

}  // namespace zent
