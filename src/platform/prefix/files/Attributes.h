#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <string>

#include "base/Status.h"

/// Windows attributes of the machine's files, in the form that Wine stores them: read-only is a
/// mode without any write permission; hidden and system are the extended attribute user.DOSATTRIB,
/// the text "0x2", "0x4" or "0x6". A name with a leading dot is not hidden by that.
namespace zent {

/// True when no one may write: judged by the mode, so that it holds for root too.
bool IsReadOnly(const struct stat& info);

/// The kAttribute bits of a file or folder. Every file has the archive bit.
std::uint32_t AttributesOf(int folder_fd, const std::string& name, const struct stat& info);

/// Sets read-only, hidden and system as in `attributes`; other bits are passed over. A folder is
/// never made read-only: for a Windows folder the bit protects nothing, a missing write permission
/// would. Where hidden or system is asked for and cannot be stored, nothing changes: an error.
Status StoreAttributes(int folder_fd, const std::string& name, const struct stat& info,
                       std::uint32_t attributes);

/// Stores hidden and system alone, and no attribute at all for neither; the errno of a failure,
/// or 0.
int StoreHiddenAndSystem(int folder_fd, const std::string& name, std::uint32_t attributes);

}  // namespace zent
