#pragma once

#include <string>

#include "app/jetdb/JetdbHost.h"

namespace zent {

/// How the sample component ends, as the updater reads it.
inline constexpr int kComponentDone = 0;
inline constexpr int kComponentFailed = 1;
inline constexpr int kComponentNotOpened = 2;

/// Runs the statements of every "*.sql" file in `folder` on the database, in the order of the
/// files' names: all of them or none. A missing folder holds none. What went wrong is written to
/// the host's standard error. Paths are the host's own, UTF-8.
int ApplyCustomisations(JetdbHost& host, const std::string& database, const std::string& folder);

}  // namespace zent
