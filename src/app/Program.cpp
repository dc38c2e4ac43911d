#include "app/Program.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "app/Convert.h"
#include "app/DatabaseEngines.h"
#include "app/HostFile.h"
#include "app/HostPath.h"
#include "app/RunRecorder.h"
#include "app/TraceFile.h"
#include "app/Translate.h"
#include "base/Text.h"
#include "driver/frmZentUpdate.h"
#include "lib/FuncLib.h"
#include "ui/script/ScriptWindow.h"

namespace zent {
namespace {

/// What the command line adds to a run, opened.
struct RunExtras {
  ScriptedAnswers answers;
  std::optional<RecordFile> log;
  std::optional<RecordFile> events;
  std::optional<TraceFile> trace;
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

/// Shows the run of a package or a conversion in the window until its end.
template <typename Form>
ExitCode RunForm(ProgramHost& host, const CommandLine& line, UpdateWindow& window, Form& form,
                 DatabaseTrace* trace) {
  DatabaseEngines engines(host.databases(), host.platform().clock, host.ComputerName());
  UpdateRun& run = form.run();
  engines.Serve(run.database);
  run.database.trace = trace;
  window.Run(form);
  run.database.workspace.reset();  // before its engine
  return ExitCodeOf(form.result(), run.state.RebootComputer, run.WorstOutcome(),
                    line.detailed_exitcode);
}

/// Does what the line asks for on the opened machine through `window`.
ExitCode RunLine(ProgramHost& host, const CommandLine& line, UpdateWindow& window,
                 RunObserver& observer, DatabaseTrace* trace) {
  if (line.conversion) {
    ConversionRun form(host.platform(), window, observer, *line.conversion);
    return RunForm(host, line, window, form, trace);
  }
  frmZentUpdate form(host.platform(), window, observer, {.strict = line.strict}, host.package());
  return RunForm(host, line, window, form, trace);
}

ExitCode RunThroughWindow(ProgramHost& host, const CommandLine& line, UpdateWindow& screen,
                          RunExtras& extras, RunObserver& observer) {
  DatabaseTrace* const trace = extras.trace ? &*extras.trace : nullptr;
  if (!IsScripted(line)) return RunLine(host, line, screen, observer, trace);

  ScriptWindow script(screen, std::move(extras.answers), line.retries);
  const ExitCode code = RunLine(host, line, script, observer, trace);
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
  if (line.trace.empty()) return std::nullopt;
  extras.trace.emplace(TextOf(caller / HostPath(line.trace)));
  if (extras.trace->CanAppend()) return std::nullopt;
  return Refusal{ExitCode::WrongCommandLine,
                 StandardError(kPathFileAccess, line.trace).description};
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
  if (line.conversion) return OpenRecords(caller, line, extras);
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
  const ExitCode code = RunThroughWindow(host, line, *screen, extras, recorder);
  for (const std::string& complaint : recorder.Complaints()) host.Complain(complaint);
  return code;
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
  if (const auto* const translation = std::get_if<TranslateLine>(&parsed)) {
    return Translate(host, *translation);
  }
  CommandLine line = std::get<CommandLine>(parsed);
  if (line.conversion) {
    // A machine may make another folder the current one.
    for (std::string* name : {&line.conversion->source, &line.conversion->database}) {
      if (ToLower(GetFileExtension(*name)) != "mdb") continue;
      std::error_code unknown;
      *name = TextOf(std::filesystem::absolute(HostPath(*name), unknown));
    }
  }
  return Run(host, line);
}

}  // namespace zent
