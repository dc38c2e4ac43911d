#pragma once

#include <string>

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

/// The plain copies of the setup list: a source and a destination. A file of the package is named
/// by its path below the package folder, without macros. All but the ones that copy what is missing
/// overwrite, and clear the attributes of what they overwrite. A file in use opens Retry/Cancel.
namespace zent {

/// "copy": copies a package file, always.
Status CopyFromPackage(UpdateRun& run, const TokenList& tokens);

/// "cc": copies a package file whose destination is missing; says and does nothing otherwise.
Status CopyFromPackageIfMissing(UpdateRun& run, const TokenList& tokens);

/// "copyl": copies a file of the machine, always.
Status CopyOnMachine(UpdateRun& run, const TokenList& tokens);

/// "ccl": copies a file of the machine that exists to a destination that is missing; says and does
/// nothing otherwise.
Status CopyOnMachineIfMissing(UpdateRun& run, const TokenList& tokens);

/// The work of "copy". While the file is in use it is tried again, after five seconds, as often as
/// the user chooses Retry. With `quiet` no box is shown: an error sets ErrorOccurred and ends the
/// copy.
void CopyPackageFile(UpdateRun& run, const std::string& source, const std::string& destination,
                     bool quiet);

}  // namespace zent
