#pragma once

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

namespace zent {

/// "CopyRegIfNotSameVersion" and "CopyRegIfNewerVersion", told apart by token 1: copies a package
/// file whose version differs from that of the destination, or is above it, and registers the
/// destination in either case. The attributes of the destination are not touched.
///
/// A destination in use is not asked about: it gets a time-stamped name, the new file takes its
/// place, and a restart is asked for at the end of the run. When the new file cannot take its place
/// the old one gets its name back, and no restart is asked for.
Status CopyByVersion(UpdateRun& run, const TokenList& tokens);

}  // namespace zent
