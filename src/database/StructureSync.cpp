#include "database/StructureSync.h"

#include <optional>
#include <string_view>
#include <utility>

#include "base/CaseFold.h"
#include "base/Text.h"
#include "database/CompactDatabase.h"
#include "database/DBFuncs.h"
#include "database/DatabaseBackup.h"
#include "database/InUseCheck.h"
#include "database/VersionRecord.h"
#include "driver/run/Messages.h"
#include "driver/run/PathMacros.h"
#include "lib/AppSettings.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

constexpr std::string_view kErrorSynchronizing = "Error synchronizing DataBase ";

/// Full paths.
struct DatabasePair {
  std::string template_path;
  std::string database_path;
};

enum class PairEnd { UpToDate, Missing, Synchronised, Stopped };

bool CanBeOptions(std::string_view token) {
  return token.find_first_of("\\/") == std::string_view::npos &&
         token.find("$(") == std::string_view::npos &&
         FindIgnoringCase(token, ".mdb") == std::string_view::npos;
}

Result<bool> HasVersionOfTemplate(UpdateRun& run, const DatabasePair& pair) {
  std::optional<std::string> versions[2];
  const std::string* const paths[2] = {&pair.template_path, &pair.database_path};
  for (std::size_t i = 0; i < 2; ++i) {
    OpenRequest request{.read_only = true};
    const Result<DatabasePtr> opened = OpenDatabase(run, *paths[i], request);
    if (!opened.ok()) return opened.error();
    if (opened.value() == nullptr) return StandardError(kObjectNotSet);
    const Result<std::optional<std::string>> version = ReadVersionRecord(run, *opened.value());
    if (!version.ok()) return version.error();
    versions[i] = version.value();
  }
  return versions[0].has_value() && versions[0] == versions[1];
}

/// Both databases of a pair, opened.
struct OpenedPair {
  DatabasePtr source;
  DatabasePtr target;
  std::string password;  ///< of the target; empty for none
};

Result<OpenedPair> OpenPair(UpdateRun& run, const DatabasePair& pair) {
  OpenRequest template_request{.read_only = true};
  Result<DatabasePtr> source = OpenDatabase(run, pair.template_path, template_request);
  if (!source.ok()) return source.error();
  OpenRequest request{.exclusive = true};
  Result<DatabasePtr> target = OpenDatabase(run, pair.database_path, request);
  if (!target.ok()) return target.error();
  if (source.value() == nullptr || target.value() == nullptr) return StandardError(kObjectNotSet);
  return OpenedPair{.source = std::move(source.value()),
                    .target = std::move(target.value()),
                    .password = request.password};
}

/// Runs the core over both and closes them.
Result<SyncEnd> SynchroniseAndClose(UpdateRun& run, const OpenedPair& opened,
                                    const LookupTopUp& top_up) {
  Result<SyncEnd> end = SynchroniseTables(run, *opened.source, *opened.target, top_up);
  static_cast<void>(opened.source->Close().ok());  // nothing was changed in it
  const Status closed = opened.target->Close();
  if (end.ok() && !closed.ok()) return closed.error();
  return end;
}

void WarnOfIncomplete(UpdateRun& run, const std::string& path, const std::string& backup) {
  const std::string line_break(kLineBreak);
  run.Ask({.title = {},
           .text = "WARNING!" + line_break + "Your Korvo database (" + path +
                   ") may be incomplete." + line_break +
                   "You may have to restore the database from the backup (" + backup +
                   ") and re-run this Update",
           .icon = BoxIcon::Critical});
  run.Fail("the backup is " + backup);
}

/// The failure of the core: ErrorOccurred stays clear, as the list of commands goes on.
void ShowCoreError(UpdateRun& run, const std::string& path, const RuntimeError& error) {
  run.Ask({.title = {}, .text = ErrorText(std::string(kErrorSynchronizing) + path, error)});
  run.Fail(ReasonOf(error));
}

/// From the backup on: nobody else has the database open.
Result<PairEnd> ChangePair(UpdateRun& run, const DatabasePair& pair, const LookupTopUp& top_up) {
  const std::string& path = pair.database_path;
  const Result<std::string> backup = BackUpDatabase(run, path);
  if (!backup.ok()) return backup.error();

  run.ShowMsg(" ");
  run.ShowMsg("Sync " + path);
  const Result<OpenedPair> opened = OpenPair(run, pair);
  if (!opened.ok()) return WithBackup(opened.error(), backup.value());
  const Result<SyncEnd> end = SynchroniseAndClose(run, opened.value(), top_up);
  if (!end.ok()) ShowCoreError(run, path, end.error());
  if (!end.ok() || end.value() == SyncEnd::Stopped) {
    WarnOfIncomplete(run, path, backup.value());
    return PairEnd::Stopped;
  }
  const Status compacted = CompactDatabase(run, path, opened.value().password);
  if (!compacted.ok()) return WithBackup(compacted.error(), backup.value());
  return PairEnd::Synchronised;
}

/// A run that was killed in the compaction had written the version already: what it left is met
/// here and never again.
PairEnd EndUpToDate(UpdateRun& run, const std::string& path) {
  const Status removed = RemoveLeftovers(run, path);
  if (!removed.ok()) run.Note("left behind beside " + path + ": " + ReasonOf(removed.error()));
  return PairEnd::UpToDate;
}

Result<PairEnd> SyncPair(UpdateRun& run, const DatabasePair& pair, const LookupTopUp& top_up) {
  const std::string& path = pair.database_path;
  if (!FileExists(run.platform.files, path)) {
    run.ShowMsg("Warning - Could not check the database.");
    run.ShowMsg("Database " + path + " not found.");
    run.Fail("no such database: " + path);
    return PairEnd::Missing;
  }
  run.ShowMsg("Checking DB Version");
  Result<bool> is_up_to_date = HasVersionOfTemplate(run, pair);
  // Who holds a database so that it cannot even be read is asked to close it, as anybody else.
  const bool is_held = IsInUseError(is_up_to_date.number());
  if (!is_up_to_date.ok() && !is_held) return is_up_to_date.error();
  if (is_up_to_date.value_or(false)) return EndUpToDate(run, path);
  if (!ClaimDatabase(run, path)) return PairEnd::Stopped;
  if (is_held) {
    is_up_to_date = HasVersionOfTemplate(run, pair);
    if (!is_up_to_date.ok()) return is_up_to_date.error();
    if (is_up_to_date.value()) return EndUpToDate(run, path);
  }
  return ChangePair(run, pair, top_up);
}

/// As SyncPair, with its error reported.
PairEnd SyncPairReporting(UpdateRun& run, const DatabasePair& pair, const LookupTopUp& top_up) {
  const Result<PairEnd> end = SyncPair(run, pair, top_up);
  if (end.ok()) return end.value();
  run.Report(std::string(kErrorSynchronizing) + pair.database_path, end.error());
  return PairEnd::Stopped;
}

std::string FullOrAsGiven(UpdateRun& run, const std::string& path) {
  return run.platform.files.FullPath(path).value_or(path);
}

/// The installation's own database, when the one that was named lies elsewhere and a template is
/// there.
std::optional<DatabasePair> OwnPair(UpdateRun& run, const DatabasePair& main) {
  const std::string folder = run.state.AppPath + R"(ZentData\)";
  const std::string full = FullOrAsGiven(run, main.database_path);
  const std::string main_folder = full.substr(0, full.size() - GetFileName(full).size());
  if (SameName(main_folder, FullOrAsGiven(run, folder))) return std::nullopt;
  DatabasePair own{.template_path = folder + R"(Customize\KorvoTPL.mdb)",
                   .database_path = folder + "Korvo.mdb"};
  if (!FileExists(run.platform.files, own.template_path)) return std::nullopt;
  return own;
}

}  // namespace

Result<SyncArguments> SyncArgumentsOf(const TokenList& tokens) {
  std::string text[3];
  for (std::size_t i = 0; i < 3; ++i) {
    const Result<std::string> token = tokens.At(i + 2);
    if (!token.ok() && i < 2) return token.error();
    text[i] = TrimBlanks(token.value_or(""));
  }
  if (tokens.Count() > 3 && CanBeOptions(text[0]) && !CanBeOptions(text[2])) {
    return SyncArguments{.options = text[0], .template_path = text[1], .database_path = text[2]};
  }
  return SyncArguments{.options = text[2], .template_path = text[0], .database_path = text[1]};
}

Status SynchroniseStructure(UpdateRun& run, const TokenList& tokens, const LookupTopUp& top_up) {
  const Result<SyncArguments> arguments = SyncArgumentsOf(tokens);
  if (!arguments.ok()) {
    return run.ReportError(std::string(kErrorSynchronizing), arguments.error());
  }
  const bool is_forced = FindIgnoringCase(arguments.value().options, "force") != std::string::npos;
  if (!is_forced && HasNeverRun(run.platform, run.state.AppName)) {
    run.Skip("the application has never run");
    return {};
  }
  const DatabasePair main{.template_path = ExpandPath(run, arguments.value().template_path),
                          .database_path = ExpandPath(run, arguments.value().database_path)};
  const PairEnd main_end = SyncPairReporting(run, main, top_up);
  if (main_end == PairEnd::Stopped) return {};
  const std::optional<DatabasePair> own = OwnPair(run, main);
  const PairEnd own_end = own ? SyncPairReporting(run, *own, top_up) : PairEnd::UpToDate;
  if (main_end == PairEnd::UpToDate && own_end == PairEnd::UpToDate) {
    run.Skip("the database has the version of its template");
  }
  return {};
}

}  // namespace zent
