#include "fileops/VersionedCopy.h"

#include "base/Text.h"
#include "driver/run/BackupName.h"
#include "driver/run/PathBounds.h"
#include "driver/run/PathMacros.h"
#include "fileops/DeleteAndRename.h"
#include "fileops/FileSteps.h"
#include "fileops/Registration.h"
#include "lib/FuncLib.h"
#include "lib/modGetFileVersion.h"

namespace zent {
namespace {

/// One version-compared copy.
struct VersionedCopy {
  std::string source;  ///< as written
  std::string from;
  std::string to;
};

Status ShowAndCopy(UpdateRun& run, const VersionedCopy& copy) {
  run.ShowMsg("Copying " + copy.source + " to " + copy.to);
  return run.platform.files.Copy(copy.from, copy.to);
}

Status ReportCopy(UpdateRun& run, const VersionedCopy& copy, const RuntimeError& error) {
  return run.ReportError(std::string(kErrorCopying) + copy.source, error);
}

Status Register(UpdateRun& run, const std::string& file) {
  bool quiet = false;
  return RegisterComponent(run, file, quiet);
}

/// Why the file is not to be copied, as the message says it; empty when it is.
std::string_view ReasonToKeep(const UpdateRun& run, std::string_view keyword,
                              const VersionedCopy& copy) {
  const std::string offered = GetFileVersionText(run.platform.versions, copy.from);
  const std::string installed = GetFileVersionText(run.platform.versions, copy.to);
  if (keyword == "copyregifnotsameversion") {
    return offered == installed ? "same version" : "";
  }
  // Equal versions read "older" too; the wording is kept.
  return IsVersionNotNewer(offered, installed) ? "older version" : "";
}

/// Puts the new file in the place of one that is in use, which keeps a time-stamped name.
Status ReplaceByRenaming(UpdateRun& run, const VersionedCopy& copy) {
  bool quiet = false;
  const Status unregistered = UnregisterComponent(run, copy.to, quiet);
  if (!unregistered.ok()) run.Report("Error Unregistering " + copy.to, unregistered.error());

  const std::string backup = FreeTimeStampedName(run, copy.to);
  const Renaming renaming = RenameFile(run, "ren", copy.to, backup);
  if (renaming == Renaming::Failed) return {};

  const Status copied = ShowAndCopy(run, copy);
  if (!copied.ok()) {
    if (renaming == Renaming::Done) RenameFile(run, "ren", backup, copy.to);
    return ReportCopy(run, copy, copied.error());
  }
  Status registered = Register(run, copy.to);
  run.state.RebootComputer = true;
  if (ToLower(GetFileExtension(copy.source)) == "exe") run.state.CopyExeFailed = true;
  return registered;
}

}  // namespace

Status CopyByVersion(UpdateRun& run, const TokenList& tokens) {
  const std::optional<CopyArguments> arguments = ReadCopyArguments(run, tokens);
  if (!arguments) return {};
  const std::optional<std::string> from = PackageSource(run, arguments->source);
  if (!from) return {};
  const VersionedCopy copy{.source = arguments->source,
                           .from = *from,
                           .to = ExpandDestination(run, arguments->source, arguments->destination)};

  const std::string keyword = ToLower(TrimBlanks(tokens.At(1).value_or("")));
  if (keyword != "copyregifnotsameversion" && keyword != "copyregifnewerversion") return {};

  const std::string_view reason = ReasonToKeep(run, keyword, copy);
  if (!reason.empty()) {
    run.ShowMsg("Not copying " + copy.source + " - " + std::string(reason));
    run.Skip("not copied: " + std::string(reason));
    return Register(run, copy.to);
  }
  const Status copied = ShowAndCopy(run, copy);
  if (copied.ok()) return Register(run, copy.to);
  if (copied.number() == kPermissionDenied) return ReplaceByRenaming(run, copy);
  return ReportCopy(run, copy, copied.error());
}

}  // namespace zent
