#pragma once

#include <cstdint>
#include <string>

#include "base/Status.h"

namespace zent {

/// Whether the file `ansi_path` can be opened for `access` (GENERIC_READ, GENERIC_WRITE, DELETE)
/// beside those who have it open. For calls that fail without a clear reason, or that would half
/// succeed. Missing file: kFileNotFound; missing folder: kPathNotFound; in use: kPermissionDenied;
/// a folder, or a read-only file when more than reading is asked for: kPathFileAccess.
Status CheckFile(const std::string& ansi_path, std::uint32_t access);

}  // namespace zent
