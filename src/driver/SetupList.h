#pragma once

#include "driver/run/UpdateRun.h"

namespace zent {

/// Runs the setup list of the run: the lines of SetupLstFileName from the line "[setup]" on, in
/// order, up to the next section, the end of the file, or the first command that leaves
/// ErrorOccurred set. A list that cannot be read is a reported error.
void RunSetupList(UpdateRun& run);

}  // namespace zent
