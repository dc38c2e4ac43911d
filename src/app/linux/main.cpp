#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>

#include "app/CommandLine.h"
#include "app/ExitCode.h"
#include "app/HostFile.h"
#include "app/RunRecorder.h"
#include "app/linux/Desktop.h"
#include "app/linux/PrefixMachine.h"
#include "driver/frmZentUpdate.h"
#include "ui/console/ConsoleWindow.h"
#include "ui/script/ScriptWindow.h"

namespace zent {
namespace {

ExitCode Complain(ExitCode code, const std::string& what) {
  std::cerr << "zentupdate: " << what << "\n";
  return code;
}

std::string Environment(const char* name) {
  const char* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): one thread
  return value == nullptr ? "" : value;
}

std::filesystem::path MachineFolder(const CommandLine& line) {
  if (!line.machine.empty()) return std::filesystem::absolute(line.machine);
  if (const std::string prefix = Environment("WINEPREFIX"); !prefix.empty()) return prefix;
  const std::string home = Environment("HOME");
  return home.empty() ? std::filesystem::path() : std::filesystem::path(home) / ".wine";
}

/// The exit code of a machine that could not be opened.
ExitCode CodeOfMachineError(const RuntimeError& error) {
  if (error.number == kPathNotFound || error.number == kFileNotFound) {
    return ExitCode::WrongCommandLine;
  }
  return error.number == kPermissionDenied ? ExitCode::MachineInUse : ExitCode::Failed;
}

/// Opens what a run's record goes to; nothing for an empty path.
Result<std::optional<RecordFile>> OpenRecord(const std::string& path) {
  if (path.empty()) return std::optional<RecordFile>();
  Result<RecordFile> file = RecordFile::Create(path);
  if (!file.ok()) return file.error();
  return std::optional<RecordFile>(std::move(file.value()));
}

Result<ScriptedAnswers> ReadAnswers(const std::string& path) {
  if (path.empty()) return ScriptedAnswers();
  const Result<std::string> contents = ReadHostFile(path);
  if (!contents.ok()) return contents.error();
  return ParseAnswers(contents.value());
}

/// True when questions are answered beforehand, not by a person.
bool IsScripted(const CommandLine& line) { return line.unattended || !line.answers.empty(); }

/// Runs the package over the opened machine through `window`.
ExitCode RunPackage(const CommandLine& line, const PrefixMachine& machine, UpdateWindow& window,
                    RunObserver& observer) {
  frmZentUpdate form(machine.platform(), window, observer, {.strict = line.strict},
                     machine.package());
  window.Run(form);
  return ExitCodeOf(form.result(), form.run().state.RebootComputer, form.run().WorstOutcome(),
                    line.detailed_exitcode);
}

ExitCode RunThroughWindow(const CommandLine& line, const PrefixMachine& machine,
                          UpdateWindow& screen, ScriptedAnswers answers, RunObserver& observer) {
  if (!IsScripted(line)) return RunPackage(line, machine, screen, observer);

  ScriptWindow script(screen, std::move(answers), line.retries);
  const ExitCode code = RunPackage(line, machine, script, observer);
  for (const std::string& complaint : script.complaints()) Complain(code, complaint);
  return code;
}

/// The window that the command line chooses; null when it is not to be had.
std::unique_ptr<UpdateWindow> MakeScreen(const CommandLine& line) {
  if (line.window != WindowChoice::Console) {
    std::unique_ptr<UpdateWindow> window = MakeGraphicalWindow();
    if (window != nullptr || line.window == WindowChoice::Window) return window;
  }
  const bool interactive = !IsScripted(line) && ::isatty(STDIN_FILENO) != 0;
  return std::make_unique<ConsoleWindow>(STDIN_FILENO, std::cout, interactive);
}

ExitCode Run(const CommandLine& line) {
  Result<ScriptedAnswers> answers = ReadAnswers(line.answers);
  if (!answers.ok()) {
    return Complain(ExitCode::WrongCommandLine, line.answers + ": " + answers.error().description);
  }
  const std::filesystem::path package =
      std::filesystem::absolute(line.package.empty() ? "." : line.package);
  if (!std::filesystem::is_directory(package)) {
    return Complain(ExitCode::NoPackage, "no package folder: " + package.string());
  }
  const std::filesystem::path folder = MachineFolder(line);
  if (folder.empty()) {
    return Complain(ExitCode::WrongCommandLine, "no machine: use --machine, or set WINEPREFIX");
  }
  const std::unique_ptr<DesktopWindows> windows = MakeDesktopWindows();
  const Result<std::unique_ptr<PrefixMachine>> machine =
      PrefixMachine::Open({.folder = folder,
                           .package = package,
                           .follow_profile_links = line.follow_profile_links,
                           .path_list = Environment("PATH"),
                           .windows = windows.get()});
  if (!machine.ok()) {
    return Complain(CodeOfMachineError(machine.error()), "machine: " + machine.error().description);
  }
  const Result<std::unique_ptr<File>> list =
      machine.value()->platform().files.OpenForReading("ZentUpdate.ini");
  if (!list.ok()) {
    return Complain(ExitCode::NoPackage, "no package in " + package.string() +
                                             ": ZentUpdate.ini: " + list.error().description);
  }
  Result<std::optional<RecordFile>> log = OpenRecord(line.log);
  if (!log.ok()) return Complain(ExitCode::WrongCommandLine, log.error().description);
  Result<std::optional<RecordFile>> events = OpenRecord(line.events);
  if (!events.ok()) return Complain(ExitCode::WrongCommandLine, events.error().description);

  const std::unique_ptr<UpdateWindow> screen = MakeScreen(line);
  if (screen == nullptr) {
    return Complain(ExitCode::WrongCommandLine,
                    "no desktop for a window here (" + WindowPart() + "); use --console");
  }
  RunRecorder recorder(std::move(log.value()), std::move(events.value()),
                       IsScripted(line) ? &std::cerr : nullptr);
  return RunThroughWindow(line, *machine.value(), *screen, std::move(answers.value()), recorder);
}

ExitCode Main(int argc, const char* const* argv) {
  // A terminal that goes away must not end a run half-way.
  std::signal(SIGPIPE, SIG_IGN);  // NOLINT(cert-err33-c): there is nothing to do about it
  const auto parsed = ParseCommandLine(argc, argv, "machine: Wine prefix; " + WindowPart());
  if (const auto* const end = std::get_if<CommandLineEnd>(&parsed)) {
    (end->wrong ? std::cerr : std::cout) << end->text;
    return end->wrong ? ExitCode::WrongCommandLine : ExitCode::Success;
  }
  return Run(std::get<CommandLine>(parsed));
}

}  // namespace
}  // namespace zent

int main(int argc, char** argv) {
  try {
    return zent::NativeExitCode(zent::Main(argc, argv));
  } catch (const std::exception& defect) {
    std::cerr << "zentupdate: " << defect.what() << "\n";
    return zent::NativeExitCode(zent::ExitCode::Failed);
  }
}
