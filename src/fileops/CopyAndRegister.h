#pragma once

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

namespace zent {

/// "cr", "ccr" and "crie", told apart by token 1: copies a package file as "copy" does and
/// registers the component that it is. "ccr" leaves an existing destination alone and says so.
/// "crie" shows no error and forgets every one.
///
/// ErrorOccurred belongs to the whole run: an error left by an earlier command keeps "cr" and "ccr"
/// from registering, and "crie" clears it. Both are intended.
Status CopyAndRegister(UpdateRun& run, const TokenList& tokens);

}  // namespace zent
