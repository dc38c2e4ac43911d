#include "app/CommandLine.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <map>

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
  app.add_option("--trace", line.trace, "Append a trace of the database work to a file")
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

/// The verb that shows a statement as another kind of database gets it.
CLI::App* AddTranslate(CLI::App& app, TranslateLine& line) {
  auto* const verb = app.add_subcommand(
      "translate", "Show a statement as a kind of database gets it; warn of known traps");
  verb->fallthrough(false);
  const std::map<std::string, SqlDialect> dialects = {{"access", SqlDialect::Access},
                                                      {"oracle", SqlDialect::Oracle},
                                                      {"sqlserver", SqlDialect::SqlServer}};
  verb->add_option("--to", line.to, "sqlserver, oracle or access")
      ->required()
      ->transform(CLI::CheckedTransformer(dialects, CLI::ignore_case).description(""))
      ->type_name("KIND");
  verb->add_option("STATEMENT", line.statement,
                   "The statement; \"-\" or nothing: standard input, less one final line break");
  return verb;
}

/// The verb that restates an old database's data; options of a run may stand behind it.
CLI::App* AddConvert(CLI::App& app, ConversionLine& line) {
  auto* const verb = app.add_subcommand(
      "convert", "Restate the data of an old database in the present tables; done once");
  verb->add_option("SOURCE", line.source,
                   "The database that new values of lists come from: an .mdb file, or the\n"
                   "connect text of a server (\"DSN=...;\")")
      ->required();
  verb->add_option("DATABASE", line.database,
                   "The database to convert, a file or a server; keep a copy of it")
      ->required();
  return verb;
}

CommandLineEnd WrongLine(const std::string& what) {
  return {.text = fmt::format("{}\nTry 'zentupdate --help'.", what), .wrong = true};
}

}  // namespace

ParsedLine ParseCommandLine(int argc, const char* const* argv, const ProgramTexts& texts) {
  CommandLine line;
  TranslateLine translation;
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
  const CLI::App* const translate = AddTranslate(app, translation);
  ConversionLine conversion;
  const CLI::App* const convert = AddConvert(app, conversion);

  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    const CLI::App* const asked = translate->parsed() ? translate
                                  : convert->parsed() ? convert
                                                      : &app;
    return CommandLineEnd{.text = asked->help()};
  } catch (const CLI::CallForVersion& call) {
    return CommandLineEnd{.text = std::string(call.what()) + "\n"};
  } catch (const CLI::ParseError& error) {
    return WrongLine(error.what());
  }
  if (translate->parsed()) {
    translation.from_input = translation.statement.empty() || translation.statement == "-";
    return translation;
  }
  if (convert->parsed()) {
    if (!line.package.empty()) return WrongLine("convert takes no package: " + line.package);
    line.conversion = conversion;
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
