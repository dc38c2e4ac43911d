#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "platform/FileSystem.h"

/// The bytes of an open file.
namespace zent {

/// Writes all of `contents` from where the file stands and flushes it.
Status WriteWhole(HANDLE file, std::string_view contents);

/// Opens an existing file, whose path is ANSI, for reading at any place. Others may do with it what
/// they like.
Result<std::unique_ptr<File>> OpenToRead(const std::string& path);

}  // namespace zent
