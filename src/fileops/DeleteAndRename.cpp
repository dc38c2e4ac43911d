#include "fileops/DeleteAndRename.h"

#include "base/Text.h"
#include "driver/run/Messages.h"
#include "driver/run/PathMacros.h"
#include "fileops/FileSteps.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

constexpr std::string_view kErrorDeleting = "Error deleting ";
constexpr std::string_view kErrorRenaming = "Error Renaming ";
constexpr std::string_view kErrorCreatingFolder = "Error creating folder ";

bool HasWildcard(std::string_view path) {
  return path.find_first_of("*?") != std::string_view::npos;
}

/// True when only the package folder makes a full path of `argument`: no drive is named, or the
/// macro stands for nothing.
bool IsRelativeArgument(const UpdateRun& run, const std::string& argument) {
  std::string path = argument;
  ExpandDestFile(run, path, argument);
  return IsRelativePath(path);
}

/// Deletes what matches and keeps silent about what stays: the record alone tells.
void KillAndRecord(UpdateRun& run, const std::string& path) {
  const bool matched = PlainFileExists(run.platform.files, path);
  const int error = KillFile(run.platform.files, path);
  if (error != 0) {
    run.Fail("not deleted: " + path + ": " + ReasonOf(StandardError(error)));
  } else if (!matched) {
    run.Skip("no such file: " + path);
  }
}

}  // namespace

void DeleteMatches(UpdateRun& run, const std::string& argument, bool quiet) {
  if (HasWildcard(argument) && IsRelativeArgument(run, argument) &&
      !run.Tolerate("wildcard delete on a relative path: " + argument)) {
    return;
  }
  const std::string path = ExpandPath(run, argument);
  // A system that does not change the attributes of an open file says so here, before the deletion
  // with its silence. Any other failure, a wildcard too, only means that there is nothing to clear.
  const Status cleared = run.platform.files.SetAttributes(path, kAttributeNormal);
  if (cleared.number() == kPermissionDenied) {
    const std::string headline = std::string(kErrorDeleting) + path;
    if (quiet) {
      ReportUnlessQuiet(run, headline, cleared.error(), quiet);
    } else if (AskToRetry(run, headline, cleared.error())) {
      KillAndRecord(run, path);
    }
    return;
  }
  run.ShowMsg("Deleting " + path);
  KillAndRecord(run, path);
}

Status DeleteFiles(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> argument = tokens.At(2);
  if (!argument.ok()) return run.ReportError(kErrorDeleting, argument.error());
  DeleteMatches(run, std::string(TrimBlanks(argument.value())), /*quiet=*/false);
  return {};
}

Renaming RenameFile(UpdateRun& run, std::string_view keyword, const std::string& old_argument,
                    const std::string& new_argument) {
  FileSystem& files = run.platform.files;
  const std::string old_path = ExpandPath(run, old_argument);
  if (!PlainFileExists(files, old_path)) {
    run.Skip("no such file: " + old_path);
    return Renaming::NotTried;
  }
  const std::string new_path = DestinationOnMachine(run, old_path, new_argument);
  if (EqualsIgnoringCase(keyword, "cren") && PlainFileExists(files, new_path)) {
    run.Skip("already there: " + new_path);
    return Renaming::NotTried;
  }
  ClearAttributes(run, new_path);
  run.ShowMsg("Renaming " + old_path + " to " + new_path);
  const Status moved = files.Move(old_path, new_path);
  if (moved.ok()) return Renaming::Done;
  run.Report(std::string(kErrorRenaming) + old_path, moved.error());
  return Renaming::Failed;
}

Status RenameCommand(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> old_argument = tokens.At(2);
  const Result<std::string> new_argument = tokens.At(3);
  if (!new_argument.ok()) {
    return run.ReportError(std::string(kErrorRenaming) + old_argument.value_or(""),
                           new_argument.error());
  }
  RenameFile(run, TrimBlanks(tokens.At(1).value_or("")), old_argument.value(),
             new_argument.value());
  return {};
}

Status MakeFolder(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> folder = tokens.At(2);
  if (!folder.ok()) return run.ReportError(kErrorCreatingFolder, folder.error());

  const std::string path = ExpandPath(run, folder.value());
  run.ShowMsg("Creating Folder " + path);
  if (FolderExists(run.platform.files, path)) {
    run.Skip("already there: " + path);
    return {};
  }
  const Status created = run.platform.files.CreateFolder(path);
  if (created.ok()) return {};
  return run.ReportError(std::string(kErrorCreatingFolder) + folder.value(), created.error());
}

}  // namespace zent
