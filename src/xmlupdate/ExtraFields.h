#pragma once

#include <string>

#include "driver/run/UpdateRun.h"

namespace zent {

/// Brings the extra fields of an update description into the layout file that it names, in
/// "Customize\" of the data folder: a new tab at the end of the main tab's caption list, the new
/// fields, those marked "NewTab" with that tab's number, and the update's version. A layout that
/// has that version already is left alone, without a word.
///
/// A file that cannot be loaded is shown and sets RunState::xml_load_failed. An error in what the
/// description says of itself is handed back; any later one is reported in a box, and the layout
/// file stays as it was.
Status UpdateXFields(UpdateRun& run, const std::string& description);

}  // namespace zent
