#include "dataupdate/LookupImport.h"

#include "base/Text.h"
#include "database/DBFuncs.h"
#include "driver/run/Messages.h"
#include "driver/run/PathBounds.h"
#include "lib/FuncLib.h"
#include "lib/TextFileReader.h"

namespace zent {
namespace {

Status ImportLines(TextFileReader& file, LookupTable& table) {
  std::string line;
  for (;;) {
    const Result<bool> read = file.Next(line);
    if (!read.ok()) return read.error();
    if (!read.value()) return {};
    const Result<std::optional<LookupItem>> item = ItemOnLine(line);
    if (!item.ok()) return item.error();
    if (!item.value()) continue;
    const Result<bool> added = table.AddIfMissing(*item.value());
    if (!added.ok()) return added.error();
  }
}

Status Import(UpdateRun& run, const std::string& path) {
  Result<DatabasePtr> opened = OpenDatabase(run, run.state.KorvoDataBaseName);
  if (!opened.ok()) return opened.error();
  if (opened.value() == nullptr) return StandardError(kObjectNotSet);
  OpenedDatabase& database = *opened.value();
  Result<TextFileReader> file = TextFileReader::Open(run.platform.files, run.platform.system, path);
  if (!file.ok()) return file.error();
  // What is read within a transaction is read once.
  if (Status begun = database.BeginTransaction(); !begun.ok()) return begun;
  Result<LookupTable> table = LookupTable::Open(run, database);
  if (!table.ok()) return table.error();
  const Status imported = ImportLines(file.value(), table.value());
  // What came before the line that failed stays.
  const Status committed = database.Commit();
  if (!committed.ok()) run.Note("nothing was kept: " + ReasonOf(committed.error()));
  return imported.ok() ? committed : imported;
}

/// What every error of an import comes to: one message, and the end of the list.
Status ReportImportError(UpdateRun& run, const RuntimeError& error) {
  run.ShowMsg(ErrorText("Error importing Lookup ", error));
  run.FailStep(error);
  return {};
}

}  // namespace

Result<std::optional<LookupItem>> ItemOnLine(std::string_view line) {
  TokenList fields;
  if (const auto cut = GetTokens(line, ",", fields, "\""); !cut.ok()) return cut.error();
  const auto field = [&](std::size_t number) {
    return StripQuotes(fields.At(number).value_or(""));
  };
  LookupItem item{.list = field(1), .value = field(2), .description = field(3), .order = field(4)};
  const bool heading = EqualsIgnoringCase(item.list, "lookupfieldname");
  if (IsBlank(item.list) || IsBlank(item.value) || heading) return std::optional<LookupItem>();
  return std::optional(std::move(item));
}

Status ImportLookupItems(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> argument = tokens.At(2);
  if (!argument.ok()) return ReportImportError(run, argument.error());
  const std::optional<std::string> path = UpdateDescription(run, argument.value());
  if (!path) return {};
  run.ShowMsg("Importing Lookup Items");
  const Status imported = Import(run, *path);
  return imported.ok() ? imported : ReportImportError(run, imported.error());
}

}  // namespace zent
