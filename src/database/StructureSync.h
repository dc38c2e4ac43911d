#pragma once

#include <string>

#include "base/Status.h"
#include "database/StructureSyncCore.h"
#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

namespace zent {

/// The arguments of "stdf" as they are written.
struct SyncArguments {
  std::string options;  ///< "force" in it, in any case: also when the application has never run
  std::string template_path;
  std::string database_path;
};

/// Of "stdf,TEMPLATE,DATABASE", "stdf,TEMPLATE,DATABASE,OPTIONS" and
/// "stdf,OPTIONS,TEMPLATE,DATABASE". The options of four tokens are the one of the outer two that
/// holds neither a separator nor "$(" nor ".mdb"; the last one when both could be.
Result<SyncArguments> SyncArgumentsOf(const TokenList& tokens);

/// "stdf": brings the structure of an Access file up to that of a template that has another
/// version, after a backup, and compacts it. Then does the same for the `Korvo.mdb` in the
/// installation's own data folder, when that is another folder and has a template.
///
/// Nobody may have a database open meanwhile. An error is told in a box and sets ErrorOccurred. A
/// database that is missing or in use, an error of the core, and a stop by the user, are told and
/// recorded as failed.
Status SynchroniseStructure(UpdateRun& run, const TokenList& tokens, const LookupTopUp& top_up);

}  // namespace zent
