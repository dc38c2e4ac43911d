#pragma once

#include "database/port/OpenedDatabase.h"
#include "driver/run/UpdateRun.h"

namespace zent {

/// Restates the data of an older version in the tables of the present one: links between records,
/// lists, calendar items and the users of records in `korvo`; new values of lists and aliases come
/// from `source`. Both are open.
///
/// Done once; a second time adds every link again. A row that fails costs a box and its own change,
/// and what follows is done all the same. Each of the eight sections is one transaction, in the
/// seventh each table. A server's statements are in the dialect of the database opened last:
/// `korvo`.
void ConvertData(UpdateRun& run, OpenedDatabase& source, OpenedDatabase& korvo);

}  // namespace zent
