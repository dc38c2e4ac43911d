#include "database/UpdateScript.h"

#include <optional>
#include <utility>

#include "base/Text.h"
#include "database/DBFuncs.h"
#include "database/DatabaseBackup.h"
#include "database/InUseCheck.h"
#include "database/SQLFuncs.h"
#include "database/Structure.h"
#include "database/UpdateDocument.h"
#include "database/VersionRecord.h"
#include "driver/run/Messages.h"
#include "driver/run/PathBounds.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

constexpr std::string_view kErrorUpdating = "Error updating Database ";

Result<DatabasePtr> OpenOrFail(UpdateRun& run, const std::string& name, OpenRequest request) {
  Result<DatabasePtr> opened = OpenDatabase(run, name, request);
  if (opened.ok() && opened.value() == nullptr) return StandardError(kObjectNotSet);
  return opened;
}

/// The application's template; null, with a warning in the record, when it cannot be opened.
DatabasePtr OpenTemplate(UpdateRun& run) {
  const std::string path = run.state.AppPath + R"(Customize\KorvoTPL.mdb)";
  if (!FileExists(run.platform.files, path)) {
    run.Warn("no template: " + path);
    return nullptr;
  }
  Result<DatabasePtr> opened = OpenOrFail(run, path, {});
  if (opened.ok()) return std::move(opened.value());
  run.Warn("the template was not changed: " + ReasonOf(opened.error()));
  return nullptr;
}

Status AddFields(UpdateRun& run, const UpdateDocument& document, OpenedDatabase& database,
                 OpenedDatabase* pattern) {
  if (!TableExists(run, database, document.table)) {
    run.Warn("no such table: " + document.table);
    return {};
  }
  for (const NewField& field : document.fields) {
    if (FieldExists(run, database, document.table, field.name)) continue;
    Status added = AddField(run, database, document.table, field);
    if (added.ok() && pattern != nullptr) added = AddField(run, *pattern, document.table, field);
    if (!added.ok()) return added;
  }
  return {};
}

/// Adds the fields, one transaction in each file. The template's is the first to be committed: a
/// field that the database has is never looked at again.
Status ChangeDatabase(UpdateRun& run, const UpdateDocument& document, const std::string& path) {
  const Result<DatabasePtr> database = OpenOrFail(run, path, {.exclusive = true});
  if (!database.ok()) return database.error();
  const DatabasePtr pattern = OpenTemplate(run);
  if (Status begun = database.value()->BeginTransaction(); !begun.ok()) return begun;
  if (pattern != nullptr) {
    if (Status begun = pattern->BeginTransaction(); !begun.ok()) return begun;
  }
  Status changed = AddFields(run, document, *database.value(), pattern.get());
  if (pattern != nullptr) {
    if (const Status kept = pattern->Commit(); changed.ok()) changed = kept;
  }
  if (const Status kept = database.value()->Commit(); changed.ok()) changed = kept;
  return changed;
}

Status UpdateFile(UpdateRun& run, const UpdateDocument& document, const std::string& path) {
  if (document.table.empty()) return StandardError(kObjectNotSet, "/UpdateDB/Table/Name");
  run.ShowMsg("Updating Database " + path);
  if (!ClaimDatabase(run, path)) return {};
  const Result<std::string> backup = BackUpDatabase(run, path);
  if (!backup.ok()) return backup.error();
  return ChangeDatabase(run, document, path);
}

void ShowServerScript(UpdateRun& run, const UpdateDocument& document) {
  if (IsBlank(document.server_script)) return;
  const std::string line_break(kLineBreak);
  run.ShowMsg(" ");
  run.ShowMsg("NOTE: Please ask your SQL Server Administrator to run " + line_break +
              "      the following script on the Korvo Database. " + line_break + "      " +
              document.server_script);
  run.Warn("the administrator of the server is to run a script");
}

Result<std::optional<std::string>> RecordedVersion(UpdateRun& run, const std::string& path) {
  const Result<DatabasePtr> database = OpenOrFail(run, path, {.read_only = true});
  if (!database.ok()) return database.error();
  return ReadVersionRecord(run, *database.value());
}

Status ApplyDocument(UpdateRun& run, const UpdateDocument& document) {
  const std::string path = run.state.KorvoDataBaseName;
  Result<std::optional<std::string>> version = RecordedVersion(run, path);
  // Who holds a database so that it cannot even be read is asked to close it, as anybody else.
  if (IsInUseError(version.number()) && run.database.kind != kSQLServer) {
    if (!ClaimDatabase(run, path)) return {};
    version = RecordedVersion(run, path);
  }
  if (!version.ok()) return version.error();
  if (version.value() == document.version) {
    run.Skip("the database has version " + document.version);
    return {};
  }
  if (run.database.kind != kSQLServer) return UpdateFile(run, document, path);
  ShowServerScript(run, document);
  return {};
}

}  // namespace

void UpdateDB(UpdateRun& run, const std::string& document_path) {
  const Result<std::optional<UpdateDocument>> document = ReadUpdateDocument(run, document_path);
  if (document.ok() && !document.value()) return;
  const Status done =
      document.ok() ? ApplyDocument(run, *document.value()) : Status(document.error());
  if (done.ok()) return;
  run.ShowError(kErrorUpdating, done.error());
  run.Fail(ReasonOf(done.error()));
}

Status UpdateDatabase(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> argument = tokens.At(2);
  if (!argument.ok()) return run.ReportError(kErrorUpdating, argument.error());
  const std::optional<std::string> path =
      UpdateDescription(run, std::string(TrimBlanks(argument.value())));
  if (path) UpdateDB(run, *path);
  return {};
}

}  // namespace zent
