#pragma once

#include <string>
#include <string_view>

#include "base/Status.h"

namespace zent {

/// The path of a key in ANSI as every system takes it: without trailing and doubled backslashes. A
/// leading backslash is kPathFileAccess. A name that no key can have (longer than 255 characters,
/// with a NUL, or not to be spelled in the ANSI code page) is `impossible`.
Result<std::string> AnsiKeyPath(std::string_view path, int impossible);

}  // namespace zent
