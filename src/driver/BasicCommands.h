#pragma once

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

/// The commands of the driver itself.
namespace zent {

/// msg,TEXT: shows the text, once more without quotes around it.
Status ShowText(UpdateRun& run, const TokenList& tokens);

/// wait,SECONDS: waits that long, fractions allowed, and keeps the window responsive.
Status WaitSeconds(UpdateRun& run, const TokenList& tokens);

/// wrttoini,FILE,SECTION,KEY,VALUE and its synonym wrtnetupdini: writes one value into a settings
/// file. The window never hears of a failure, which does not end the list; the record does. A name
/// without a folder stays bare: such a file lies in the Windows folder.
Status WriteSetting(UpdateRun& run, const TokenList& tokens);

}  // namespace zent
