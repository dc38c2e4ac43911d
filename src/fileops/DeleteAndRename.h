#pragma once

#include <string>
#include <string_view>

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

namespace zent {

/// "del": deletes the files that match a path, wildcards allowed. A file that cannot be deleted
/// stays without a word; only the record says so. A wildcard on a relative path is recorded as a
/// warning, and a strict run refuses it: a macro or folder forgotten there empties the package.
Status DeleteFiles(UpdateRun& run, const TokenList& tokens);

/// "ren" and "cren", told apart by token 1: renames or moves a file; says and does nothing when it
/// is missing. Onto an existing file "ren" fails, and "cren" says and does nothing.
Status RenameCommand(UpdateRun& run, const TokenList& tokens);

/// "mkdr": makes the last level of a folder. An existing folder is no error.
Status MakeFolder(UpdateRun& run, const TokenList& tokens);

/// The work of "del". With `quiet` an error shows no box.
void DeleteMatches(UpdateRun& run, const std::string& argument, bool quiet);

enum class Renaming {
  Done,
  NotTried,  ///< there was nothing to rename, or the new name was taken
  Failed,    ///< reported
};

/// The work of "ren" and "cren"; paths may begin with a macro.
Renaming RenameFile(UpdateRun& run, std::string_view keyword, const std::string& old_argument,
                    const std::string& new_argument);

}  // namespace zent
