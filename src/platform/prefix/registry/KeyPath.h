#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"

namespace zent {

/// The names of the keys from a root down to one key; empty for the root itself.
using KeyPath = std::vector<std::string>;

/// The longest name of one key, in UTF-16 units.
inline constexpr std::size_t kLongestKeyName = 255;

/// The names of a path with backslashes. Trailing and doubled backslashes are tolerated, a leading
/// one is kPathFileAccess.
Result<KeyPath> ParseKeyPath(std::string_view path);

/// True when no name of the path is longer than a key's name may be.
bool HasValidNames(const KeyPath& path);

/// True when `path` is `top` or lies below it; names match in any case.
bool IsAtOrBelow(const KeyPath& path, const KeyPath& top);

}  // namespace zent
