#pragma once

#include <cstdint>
#include <string>

#include "base/Status.h"
#include "platform/win32/files/FilePath.h"

/// What the system knows of a file before it is changed. Paths are ANSI.
namespace zent {

/// The kAttribute bits of a file or folder; bits that the port does not know are left out.
Result<std::uint32_t> AttributesOf(const std::string& path);

/// Makes read-only, hidden, system and archive those of `attributes`. A folder is never made
/// read-only: on Windows the bit protects nothing in it, under Wine it would protect everything.
Status StoreAttributes(const std::string& path, std::uint32_t attributes);

/// What keeps the existing file `path` from being replaced: kPathFileAccess when it is read-only or
/// the user has no right to, kPermissionDenied when a program has it open or runs it.
Status CheckReplaceable(const std::string& path);

/// What keeps the existing file `path` from being renamed: kPathFileAccess when the user has no
/// right to, kPermissionDenied when a program has it open. It may be read-only.
Status CheckMovable(const std::string& path);

/// What kept the file `path` from being deleted or replaced, after an "access denied" that says the
/// same of a file without rights and of one that a program runs.
RuntimeError ReasonForDenial(const std::string& path);

/// True when both lead to the same file, by another spelling or by a hard link.
bool IsSameFile(const std::string& a, const std::string& b);

}  // namespace zent
