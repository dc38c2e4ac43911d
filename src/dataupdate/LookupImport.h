#pragma once

#include <optional>
#include <string_view>

#include "base/Status.h"
#include "dataupdate/LookupItems.h"
#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

namespace zent {

/// The item on a line of an import file: list, value, description and order, with "," between and
/// perhaps in quotes, within which a "," does not divide; what is missing at the end is empty.
/// Nothing for a line that is not to be imported: its list or its value is blank, or it is the
/// heading.
///
/// Error: a line that cannot be cut into fields.
Result<std::optional<LookupItem>> ItemOnLine(std::string_view line);

/// "importlookup,FILE": adds to the application's database the items of a text file that it lacks.
/// The file lies in the package, unless it begins with a macro or a drive (UpdateDescription). An
/// error ends the import at its line and is told in one message; the items before it stay.
Status ImportLookupItems(UpdateRun& run, const TokenList& tokens);

}  // namespace zent
