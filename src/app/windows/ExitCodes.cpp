#include "app/ExitCode.h"

namespace zent {

// As the system and its installer number them, so that whoever rolls packages out knows them
// already: 1618 to 1642 and 3010 of winerror.h. 10 stands outside its range of such ends.
int NativeExitCode(ExitCode code) {
  switch (code) {
    case ExitCode::Success:
      return 0;
    case ExitCode::RestartNeeded:
      return 3010;
    case ExitCode::SuccessWithWarnings:
      return 10;
    case ExitCode::Failed:
      return 1603;
    case ExitCode::WrongCommandLine:
      return 1639;
    case ExitCode::NoPackage:
      return 1619;
    case ExitCode::NotInstalled:
      return 1642;
    case ExitCode::MachineInUse:
      return 1618;
    case ExitCode::RefusedByStrict:
      return 1625;
  }
  return 1603;
}

}  // namespace zent
