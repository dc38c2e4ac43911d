#pragma once

#include <string>
#include <string_view>

#include "driver/run/UpdateRun.h"

namespace zent {

/// Merges an update description into the application's XML files, below `base_path`, which ends
/// with a separator. Each entry of the description names a file; its operations take elements of
/// the file's system copy and put them into its customised copy, which then gets the system copy's
/// version. A customised copy that has that version already is left alone.
///
/// What cannot be loaded is shown, sets RunState::xml_load_failed and is passed over, as is an
/// element that is not found. A run-time error ends the merge and is handed back: the file in hand
/// is not saved, files saved before stay saved. Each file is parsed and saved once.
Status MergeXMLs(UpdateRun& run, std::string_view base_path, const std::string& description);

}  // namespace zent
