#pragma once

#include <string>
#include <string_view>

#include "base/Status.h"
#include "platform/ShellLinks.h"

/// The file format of shell links, as Microsoft publishes it under the name MS-SHLLINK: a header,
/// the target as a list of shell items, the target as a path, and the texts. Times and sizes of the
/// target are left zero, which stands for unknown: a link whose target changes stays right.
namespace zent {

/// The bytes of a link file. `target_is_folder` decides what the last shell item says of itself.
/// The items hold the Unicode names of the target. Its path is in the ANSI code page, and is left
/// out where that cannot spell it.
/// Errors: kBadFileName for a target that does not begin with a drive and a separator, and for a
/// text that its 16-bit length cannot count.
Result<std::string> FormatShellLink(const ShellLink& link, bool target_is_folder);

}  // namespace zent
