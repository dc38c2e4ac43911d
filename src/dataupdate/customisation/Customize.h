#pragma once

#include <string>

#include "dataupdate/customisation/CustomisationComponent.h"
#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

namespace zent {

/// Lets the component re-apply the customisations in "Customize\" of the data folder to a database:
/// a full path, or a connect text. With the flag, an installation whose data folder holds
/// "Customize\Customize.ini" is skipped without a word. A failure is one message and ends the list.
Status Customize(UpdateRun& run, CustomisationComponent& component, const std::string& database,
                 bool unless_customised);

/// The database that an argument names: a connect text ("DSN=...") as it stands, a path with a
/// macro, a drive or a separator at its start as everywhere, any other name in the data folder.
std::string CustomisedDatabase(const UpdateRun& run, const std::string& argument);

/// rcw,DATABASE: Customize, without the flag. crcw,DATABASE: with it.
Status RunCustomisation(UpdateRun& run, const TokenList& tokens);
Status RunCustomisationOnce(UpdateRun& run, const TokenList& tokens);

}  // namespace zent
