#pragma once

#include "driver/run/CommandRecord.h"
#include "driver/run/RunObserver.h"

namespace zent {

/// How the program ended, for whoever started it. Each system has its own numbers.
enum class ExitCode {
  Success,
  RestartNeeded,
  SuccessWithWarnings,  ///< only when asked for: some command was warned or failed
  Failed,               ///< "Setup failed.", or the machine cannot be used
  WrongCommandLine,
  NoPackage,
  NotInstalled,
  MachineInUse,
  RefusedByStrict,
};

/// The number that the process returns for `code` on this system.
int NativeExitCode(ExitCode code);

/// The exit code of a run that came to its end. `detailed` also tells of quiet warnings.
ExitCode ExitCodeOf(RunResult result, bool restart_needed, Outcome worst, bool detailed);

}  // namespace zent
