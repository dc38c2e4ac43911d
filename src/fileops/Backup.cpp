#include "fileops/Backup.h"

#include "base/Text.h"
#include "driver/run/BackupName.h"
#include "driver/run/PathMacros.h"
#include "fileops/FileSteps.h"
#include "lib/FuncLib.h"

namespace zent {

Status BackUpFile(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> argument = tokens.At(2);
  if (!argument.ok()) return run.ReportError(kErrorCopying, argument.error());

  const std::string file = ExpandPath(run, TrimBlanks(argument.value()));
  if (!FileExists(run.platform.files, file)) {
    run.Skip("no such file: " + file);
    return {};
  }
  const std::string backup = FreeTimeStampedName(run, file);
  run.ShowMsg("Backing up " + file + std::string(kLineBreak) + "    as " + backup);
  const Status copied = run.platform.files.Copy(file, backup);
  if (copied.ok()) return {};
  return run.ReportError(std::string(kErrorCopying) + file, copied.error());
}

}  // namespace zent
