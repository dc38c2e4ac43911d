#pragma once

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

namespace zent {

/// "xupd,DESCRIPTION": merges the description into the XML files of the data folder. Afterwards
/// ErrorOccurred is whether any XML file of the run failed to load, and nothing else: an earlier
/// failure of another kind is forgotten, an earlier failure to load counts again.
Status UpdateXmlFiles(UpdateRun& run, const TokenList& tokens);

/// "updxfields,DESCRIPTION": adds extra fields to a screen's layout. A file that fails to load does
/// not set ErrorOccurred: the next "xupd" does.
Status UpdateExtraFields(UpdateRun& run, const TokenList& tokens);

}  // namespace zent
