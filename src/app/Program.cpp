#include "app/Program.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "app/HostFile.h"
#include "app/HostPath.h"
#include "app/RunRecorder.h"
#include "driver/frmZentUpdate.h"
#include "ui/script/ScriptWindow.h"

namespace zent {
namespace {

/// What the command line adds to a run, opened.
struct RunExtras {
  ScriptedAnswers answers;
  std::optional<RecordFile> log;
  std::optional<RecordFile> events;
};

/// Opens what a run's record goes to, counted from the caller's folder; nothing for an empty path.
Result<std::optional<RecordFile>> OpenRecord(const std::filesystem::path& caller,
                                             const std::string& path) {
  if (path.empty()) return std::optional<RecordFile>();
  Result<RecordFile> file = RecordFile::Create(TextOf(caller / HostPath(path)));
  if (!file.ok()) return StandardError(file.error().number, path);
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
ExitCode RunPackage(ProgramHost& host, const CommandLine& line, UpdateWindow& window,
                    RunObserver& observer) {
  frmZentUpdate form(host.platform(), window, observer, {.strict = line.strict}, host.package());
  window.Run(form);
  return ExitCodeOf(form.result(), form.run().state.RebootComputer, form.run().WorstOutcome(),
                    line.detailed_exitcode);
}

ExitCode RunThroughWindow(ProgramHost& host, const CommandLine& line, UpdateWindow& screen,
                          ScriptedAnswers answers, RunObserver& observer) {
  if (!IsScripted(line)) return RunPackage(host, line, screen, observer);

  ScriptWindow script(screen, std::move(answers), line.retries);
  const ExitCode code = RunPackage(host, line, script, observer);
  for (const std::string& complaint : script.complaints()) host.Complain(complaint);
  return code;
}

std::optional<Refusal> OpenRecords(const std::filesystem::path& caller, const CommandLine& line,
                                   RunExtras& extras) {
  Result<std::optional<RecordFile>> log = OpenRecord(caller, line.log);
  if (!log.ok()) return Refusal{ExitCode::WrongCommandLine, log.error().description};
  Result<std::optional<RecordFile>> events = OpenRecord(caller, line.events);
  if (!events.ok()) return Refusal{ExitCode::WrongCommandLine, events.error().description};
  extras.log = std::move(log.value());
  extras.events = std::move(events.value());
  return std::nullopt;
}

/// Everything that may keep the run from its start, in the order in which it is told.
std::optional<Refusal> Prepare(ProgramHost& host, const CommandLine& line, RunExtras& extras) {
  Result<ScriptedAnswers> answers = ReadAnswers(line.answers);
  if (!answers.ok()) {
    return Refusal{ExitCode::WrongCommandLine, line.answers + ": " + answers.error().description};
  }
  extras.answers = std::move(answers.value());
  // A machine may make its package folder the current one.
  std::error_code unknown;
  const std::filesystem::path caller = std::filesystem::current_path(unknown);
  if (auto refused = host.OpenMachine(line)) return refused;
  const Result<std::unique_ptr<File>> list = host.platform().files.OpenForReading("ZentUpdate.ini");
  if (!list.ok()) {
    return Refusal{ExitCode::NoPackage, "no package in " + host.ShownPackage() +
                                            ": ZentUpdate.ini: " + list.error().description};
  }
  return OpenRecords(caller, line, extras);
}

ExitCode Run(ProgramHost& host, const CommandLine& line) {
  RunExtras extras;
  if (const auto refused = Prepare(host, line, extras)) {
    host.Complain(refused->text);
    return refused->code;
  }
  const std::unique_ptr<UpdateWindow> screen = host.MakeScreen(line.window, IsScripted(line));
  if (screen == nullptr) {
    host.Complain("no desktop for a window here (" + host.Texts().parts + "); use --console");
    return ExitCode::WrongCommandLine;
  }
  RunRecorder recorder(std::move(extras.log), std::move(extras.events),
                       IsScripted(line) ? host.Notes() : nullptr);
  return RunThroughWindow(host, line, *screen, std::move(extras.answers), recorder);
}

}  // namespace

ExitCode RunProgram(ProgramHost& host, int argc, const char* const* argv) {
  const auto parsed = ParseCommandLine(argc, argv, host.Texts());
  if (const auto* const end = std::get_if<CommandLineEnd>(&parsed)) {
    if (!end->wrong) {
      host.Show(end->text);
      return ExitCode::Success;
    }
    host.Complain(end->text);
    return ExitCode::WrongCommandLine;
  }
  return Run(host, std::get<CommandLine>(parsed));
}

}  // namespace zent
