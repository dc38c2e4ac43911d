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

/// The application's template, which gets the fields that the database gets. One that refuses
/// anything is warned of and left as it was, and the database is changed without it.
class TemplateChange {
 public:
  explicit TemplateChange(UpdateRun& run) : run_(run) {}

  void Begin() {
    const std::string path = run_.state.AppPath + R"(Customize\KorvoTPL.mdb)";
    if (!FileExists(run_.platform.files, path)) {
      run_.Warn("no template: " + path);
      return;
    }
    Result<DatabasePtr> opened = OpenOrFail(run_, path, {});
    LeaveUnless(opened.status());
    if (!opened.ok()) return;
    database_ = std::move(opened.value());
    LeaveUnless(database_->BeginTransaction());
  }

  void Add(const std::string& table, const NewField& field) {
    if (database_ != nullptr) LeaveUnless(AddField(run_, *database_, table, field));
  }

  void Commit() {
    if (database_ != nullptr) LeaveUnless(database_->Commit());
  }

 private:
  void LeaveUnless(const Status& done) {
    if (done.ok()) return;
    run_.Warn("the template was not changed: " + ReasonOf(done.error()));
    database_.reset();  // what it got until now is rolled back
  }

  UpdateRun& run_;
  DatabasePtr database_;  ///< null when there is none, or none any more
};

/// Adds what is missing, each field for itself: one that cannot be added keeps none of the others
/// away. All of them are recorded, the first one is shown.
void AddFields(UpdateRun& run, const UpdateDocument& document, OpenedDatabase& database,
               TemplateChange& pattern) {
  bool shown = false;
  const auto tell = [&](const std::string& field, const Status& added) {
    if (added.ok()) return;
    if (!std::exchange(shown, true)) run.ShowError(kErrorUpdating, added.error());
    run.Fail(field + ": " + ReasonOf(added.error()));
  };
  if (!TableExists(run, database, document.table)) run.Warn("no such table: " + document.table);
  for (const NewField& field : document.fields) {
    if (FieldExists(run, database, document.table, field.name)) continue;
    const Status added = AddField(run, database, document.table, field);
    if (added.ok()) pattern.Add(document.table, field);
    tell(field.name, added);
  }
  tell("field " + std::to_string(document.fields.size() + 1), document.fields_read);
}

/// Adds the fields, one transaction in each file. The template's is the first to be committed: a
/// field that the database has is never looked at again.
Status ChangeDatabase(UpdateRun& run, const UpdateDocument& document, const std::string& path) {
  const Result<DatabasePtr> database = OpenOrFail(run, path, {.exclusive = true});
  if (!database.ok()) return database.error();
  if (Status begun = database.value()->BeginTransaction(); !begun.ok()) return begun;
  TemplateChange pattern(run);
  pattern.Begin();
  AddFields(run, document, *database.value(), pattern);
  pattern.Commit();
  Status kept = database.value()->Commit();
  if (!kept.ok()) run.Note("nothing was kept: " + ReasonOf(kept.error()));
  return kept;
}

void ShowWhatIsUpdated(UpdateRun& run, const std::string& path) {
  run.ShowMsg("Updating Database " + path);
}

Status UpdateFile(UpdateRun& run, const UpdateDocument& document, const std::string& path) {
  if (document.table.empty()) return StandardError(kObjectNotSet, "/UpdateDB/Table/Name");
  if (!ClaimDatabase(run, path)) return {};
  const Result<std::string> backup = BackUpDatabase(run, path);
  if (!backup.ok()) return backup.error();
  Status changed = ChangeDatabase(run, document, path);
  return changed.ok() ? changed : WithBackup(changed.error(), backup.value());
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
  const bool was_held = IsInUseError(version.number()) && run.database.kind != kSQLServer;
  if (was_held) {
    ShowWhatIsUpdated(run, path);
    if (!ClaimDatabase(run, path)) return {};
    version = RecordedVersion(run, path);
  }
  if (!version.ok()) return version.error();
  if (version.value() == document.version) {
    run.Skip("the database has version " + document.version);
    return {};
  }
  if (run.database.kind == kSQLServer) {
    ShowServerScript(run, document);
    return {};
  }
  if (!was_held) ShowWhatIsUpdated(run, path);
  return UpdateFile(run, document, path);
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
