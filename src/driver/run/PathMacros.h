#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "driver/run/UpdateRun.h"

/// Path macros: "$(apppath)" and the like at the start of a path argument stand for a folder of the
/// installed application or of the system. Matched without regard to case; only one, at the very
/// start, counts.
namespace zent {

/// Turns a destination of the setup list into a full path. `dest_file` holds a file name on entry
/// and the path on return: the macro's folder and that name for a destination that is a folder, the
/// folder and the rest for one that is a full path. Without a macro `dest_file` stays. The
/// character behind the macro is dropped, whatever it is: it is the backslash that the folder ends
/// with already. An unknown macro stands for nothing. A "$(" that is never closed is no macro.
void ExpandDestFile(const UpdateRun& run, std::string& dest_file, std::string_view destination);

/// The path that a command's argument names: a macro path expanded, without a name put behind a
/// folder; any other path as it stands. What is still relative is taken from the package folder.
std::string ExpandPath(const UpdateRun& run, std::string_view argument);

/// The place where the file called `name` goes when a command names `destination`: as ExpandPath,
/// but a destination that is a macro folder gets the name put behind it.
std::string ExpandDestination(const UpdateRun& run, std::string_view name,
                              std::string_view destination);

/// What is wrong with the macro at the start of a path argument, in words: it is unknown, never
/// closed, or swallows the character behind it. Nothing for a sound one and for a plain path.
std::optional<std::string> MacroProblem(std::string_view argument);

/// The folders that the macros stand for; those that this machine lacks are left out.
std::vector<std::string> MacroFolders(const UpdateRun& run);

/// True for a path that begins with neither a drive nor a separator.
bool IsRelativePath(std::string_view path);

}  // namespace zent
