#pragma once

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

namespace zent {

/// SS2000ToSS2005: points the ODBC data source of an installation with a server database at the
/// driver "SQL Native Client". The data source is the one that the application's own Korvo.ini
/// names; on NT 6.0 that file is looked for in the public profile and in the user's virtual store
/// first. An installation without a data source is left alone.
///
/// Nothing here ends the list: a driver or a data source that is missing is said and recorded.
Status RelocateDataSource(UpdateRun& run, const TokenList& tokens);

}  // namespace zent
