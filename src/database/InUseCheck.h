#pragma once

#include <string>
#include <string_view>

#include "driver/run/UpdateRun.h"

namespace zent {

/// Makes sure that the Access file `path` can be opened exclusively, asking the user to close it
/// everywhere, or to put another hindrance right, until it can be or the user cancels. True when
/// the user cancelled. Nothing is left open: somebody may come between this and the next open.
///
/// Whoever holds the file, as far as the list beside it tells, is named in the message box's text.
bool IsDataBaseOpen(UpdateRun& run, std::string_view path);

/// True when nobody has the Access file open. When the user cancels, that is told in the message
/// box and recorded as failed.
bool ClaimDatabase(UpdateRun& run, const std::string& path);

/// True for the number of an error that says that somebody else has the file open.
bool IsInUseError(int number);

}  // namespace zent
