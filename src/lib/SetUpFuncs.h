#pragma once

#include <string>
#include <string_view>

#include "base/Status.h"
#include "platform/Platform.h"

/// Shortcuts, as the setup toolkit makes them: a folder is named relative to a parent folder, which
/// is a macro of the toolkit.
namespace zent {

/// The parent folder that a blank one stands for: the user's program menu.
inline constexpr std::string_view kProgramsMacro = "$(Programs)";

/// Makes the shortcut `link_name` to `target`, replacing one of that name, and every folder that is
/// missing above it. A blank `parent_folder` becomes kProgramsMacro. On the 9x family the shortcut
/// is private to the user; on the NT family a menu that the user does not have may be that of all
/// users.
///
/// The folders are those that the machine itself names, whatever its layout: from the program menu
/// ".." is the Start menu and "..\..\Desktop" the desktop.
///
/// The status is for the record of a command: nobody is told when a shortcut could not be made.
/// Errors: kBadFileName for a name that no file can have, kPathNotFound for a folder that the
/// machine does not name, kInvalidProcedureCall for another parent folder, those of the file
/// system.
Status CreateShellLink(const Platform& machine, std::string_view target, std::string_view folder,
                       std::string_view arguments, std::string_view link_name,
                       std::string& parent_folder);

}  // namespace zent
