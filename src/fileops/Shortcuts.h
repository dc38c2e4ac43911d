#pragma once

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

/// Shortcuts to the installed application. A shortcut that cannot be made is not told, as ever; the
/// record of the command has it.
namespace zent {

/// cslk,NAME,TARGET: a shortcut in the program group "Zent" of the user's program menu.
Status CreateGroupShortcut(UpdateRun& run, const TokenList& tokens);

/// csld,NAME,TARGET: a shortcut on the desktop and, deliberately, one of the same name at the top
/// of the Start menu.
Status CreateDesktopShortcut(UpdateRun& run, const TokenList& tokens);

}  // namespace zent
