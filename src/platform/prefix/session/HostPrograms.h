#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace zent {

/// What a file is to someone who wants to start it.
enum class ProgramKind {
  None,     ///< no program, or one that we may not execute
  Host,     ///< a program of the host, or a script that names its interpreter
  Windows,  ///< a program for Windows
};

/// Looks into the file; a folder, a pipe or anything unreadable is None. A Windows program needs no
/// execute permission, because it is the loader that is executed.
ProgramKind ProgramKindOf(const std::filesystem::path& file);

/// True for a regular file, also at the end of a link.
bool IsRegularFile(const std::filesystem::path& file);

/// The executable file `name` in the first folder of `path_list` (folders with colons between, as
/// in PATH) that holds one. Relative and empty entries are passed over: they would mean the current
/// folder, which is the package.
std::optional<std::filesystem::path> FindHostProgram(std::string_view name,
                                                     std::string_view path_list);

}  // namespace zent
