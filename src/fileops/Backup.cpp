#include "fileops/Backup.h"

#include "base/Text.h"
#include "driver/run/PathMacros.h"
#include "fileops/FileSteps.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

constexpr std::chrono::milliseconds kClockStep{50};

}  // namespace

std::string FreeTimeStampedName(UpdateRun& run, const std::string& path) {
  const Platform& machine = run.platform;
  std::string name = MakeTimeStampedName(path, "Both", machine.clock.Now());
  while (machine.files.Attributes(name).ok()) {
    machine.clock.Sleep(kClockStep);
    run.window.ProcessEvents(std::chrono::milliseconds(0));
    name = MakeTimeStampedName(path, "Both", machine.clock.Now());
  }
  return name;
}

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
