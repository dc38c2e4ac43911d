#pragma once

#include <string>

/// Folders as the command line and the system name them: full paths in UTF-8, in every script.
namespace zent {

/// The folder that holds the program's file.
std::string ProgramFolder();

/// The full path of a folder, from the current one; the text itself when it is no path. Without a
/// backslash behind, but for a root.
std::string FullFolder(const std::string& folder);

bool IsFolder(const std::string& path);

/// The folder by a name that the system's code page can spell: its short one where the path holds
/// other characters; the path itself when there is none.
std::string AnsiFolder(const std::string& path);

}  // namespace zent
