#include "app/ExitCode.h"

namespace zent {

ExitCode ExitCodeOf(RunResult result, bool restart_needed, Outcome worst, bool detailed) {
  switch (result) {
    case RunResult::Failed:
      return ExitCode::Failed;
    case RunResult::NotInstalled:
      return ExitCode::NotInstalled;
    case RunResult::Refused:
      return ExitCode::RefusedByStrict;
    case RunResult::Success:
      break;
  }
  // Whoever rolls a package out must restart first and look at warnings then.
  if (restart_needed) return ExitCode::RestartNeeded;
  if (detailed && worst >= Outcome::Warned) return ExitCode::SuccessWithWarnings;
  return ExitCode::Success;
}

}  // namespace zent
