#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "driver/run/UpdateRun.h"

namespace zent {

/// The two copies of an XML file of the application.
struct MergeTargets {
  std::string system;      ///< as the application delivers it; never changed
  std::string customised;  ///< with the installation's own changes
};

/// Whether an entry's `other_file_name` says where the customised copy lies: only for a file in the
/// folder ".", and not when it is blank.
bool CountsOtherFileName(std::string_view file_name,
                         const std::optional<std::string>& other_file_name);

/// Where the two copies of an entry lie. As a rule `file_name` is looked for in "Sys\" and
/// "Customize\" below `base_path`, which ends with a separator. One in the folder "." (".\a.xml")
/// is delivered with the package: its system copy lies in the updater's folder, which is the
/// package folder, and its customised copy where `other_file_name` says, or else in "Customize\".
MergeTargets ResolveTargets(const UpdateRun& run, std::string_view base_path,
                            const std::string& file_name,
                            const std::optional<std::string>& other_file_name);

/// Whether the run may work on that file: one outside the package and the known folders is recorded
/// as a warning, and refused by a strict run.
bool TolerateXmlFile(UpdateRun& run, const std::string& path);

}  // namespace zent
