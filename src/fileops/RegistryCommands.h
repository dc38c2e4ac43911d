#pragma once

#include <string>

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

namespace zent {

/// Writes `text` at `address`, which is ROOT|KEY|NAME. The roots "HKCU" and "HKLM" (capital
/// letters) are the registry; every missing level of the key is created. Any other root, "hkcu"
/// too, is the name of an application: the text goes to its per-user settings, KEY being their
/// section.
///
/// A registry write that fails is told in a box with an empty description and the number 0, and the
/// list goes on: the platform's call raises no error of its own. What was wrong is in the record.
Status WriteRegistryText(UpdateRun& run, const std::string& address, const std::string& text);

/// regw,ROOT|KEY|NAME,TEXT
Status WriteRegistryCommand(UpdateRun& run, const TokenList& tokens);

}  // namespace zent
