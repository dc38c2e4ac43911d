#include "app/ExitCode.h"

namespace zent {

// From sysexits.h where it has a fitting number: 64 usage, 66 no input, 69 unavailable, 75 try
// again, 77 no permission. 80 stands outside its range.
int NativeExitCode(ExitCode code) {
  switch (code) {
    case ExitCode::Success:
      return 0;
    case ExitCode::RestartNeeded:
      return 80;
    case ExitCode::SuccessWithWarnings:
      return 10;
    case ExitCode::Failed:
      return 1;
    case ExitCode::WrongCommandLine:
      return 64;
    case ExitCode::NoPackage:
      return 66;
    case ExitCode::NotInstalled:
      return 69;
    case ExitCode::MachineInUse:
      return 75;
    case ExitCode::RefusedByStrict:
      return 77;
  }
  return 1;
}

}  // namespace zent
