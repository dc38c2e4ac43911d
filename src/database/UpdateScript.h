#pragma once

#include <string>

#include "base/Status.h"
#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

namespace zent {

/// Brings the application's database up to an update document, unless it has that version already.
/// An Access file gets the fields that it lacks, after a backup, and so does the application's
/// template. Of a server only the script for its administrator is shown; it is never changed.
///
/// Errors are told in the message box and recorded; they do not set ErrorOccurred. A field that
/// cannot be added does not stop the others, and what was done before any other error stays. A
/// template that cannot be changed is a warning alone.
void UpdateDB(UpdateRun& run, const std::string& document_path);

/// "upddb": UpdateDB over the document of the package that token 2 names.
Status UpdateDatabase(UpdateRun& run, const TokenList& tokens);

}  // namespace zent
