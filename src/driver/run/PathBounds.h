#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "driver/run/UpdateRun.h"

/// How far the paths of a package may lead. What leads further is tolerated by a plain run, which
/// records a warning, and refused by a strict one; no path leads off the machine.
namespace zent {

/// True for the two marks between the names of a path.
inline bool IsSeparator(char c) { return c == '\\' || c == '/'; }

/// True when `path` lies in `folder`. What has no full form leads nowhere, not outside.
bool LiesIn(FileSystem& files, std::string_view path, std::string_view folder);

/// True when `path` lies in the package folder or in a folder that a path macro stands for.
bool LiesInKnownFolder(const UpdateRun& run, std::string_view path);

/// True for a path that no package may name: to a device ("NUL", "com1.xml", "\\.\C:"), or to
/// another computer unless the package or a known folder lies there.
bool LeadsOffTheMachine(const UpdateRun& run, std::string_view path);

/// The package file that `source` names: the package folder and that text, no macro expanded. A
/// source that leads outside the package folder is recorded as a warning; a strict run refuses it,
/// and the result is nothing.
std::optional<std::string> PackageSource(UpdateRun& run, const std::string& source);

/// The update description that a command names: relative to the package folder, unless `argument`
/// begins with a macro or a drive. One outside the package and the known folders is recorded as a
/// warning; a strict run refuses it, and the result is nothing.
std::optional<std::string> UpdateDescription(UpdateRun& run, const std::string& argument);

}  // namespace zent
