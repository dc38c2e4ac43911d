#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "platform/FileSystem.h"
#include "platform/win32/files/FilePath.h"

namespace zent {

/// The entries for which the system's file search takes `pattern`, a full path whose last part may
/// hold wildcards, in the order of the disk; "." and ".." are left out. It takes short names too.
/// No match is an empty list, a missing folder kPathNotFound.
///
/// Asks by the wide call: the ANSI call puts another letter, or a "?", in the place of one that is
/// missing from the code page, which then names another file.
Result<std::vector<FileEntry>> EntriesOf(std::string_view pattern);

/// What FileSystem::Find finds: by long names alone, reachable by a path, sorted.
Result<std::vector<FileEntry>> FindEntries(const FilePattern& search);

}  // namespace zent
