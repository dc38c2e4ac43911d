#pragma once

#include "app/CommandLine.h"
#include "app/ExitCode.h"
#include "app/Program.h"

namespace zent {

/// Shows a statement as a kind of database gets it, alone and with a line break behind it, and
/// complains of the traps that it is known to walk into. No machine is needed.
ExitCode Translate(ProgramHost& host, const TranslateLine& line);

}  // namespace zent
