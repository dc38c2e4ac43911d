#pragma once

namespace zent {

/// Keeps libraries from being loaded out of the folders of the program and of the package, where
/// anybody may have put them: from here on those that are named without a path come from the
/// system's folder alone. Systems without the calls for that search as they always did.
void LimitLibrarySearch();

}  // namespace zent
