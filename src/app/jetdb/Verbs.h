#pragma once

#include "app/jetdb/JetdbHost.h"
#include "app/jetdb/JetdbLine.h"

/// The verbs of jetdb. False: it ran, and found faults.
namespace zent {

Result<bool> RunInfo(JetdbHost& host, const JetdbLine& line);
Result<bool> RunTables(JetdbHost& host, const JetdbLine& line);
Result<bool> RunDump(JetdbHost& host, const JetdbLine& line);
Result<bool> RunVerify(JetdbHost& host, const JetdbLine& line);
Result<bool> RunSql(JetdbHost& host, const JetdbLine& line);
Result<bool> RunCreate(JetdbHost& host, const JetdbLine& line);
Result<bool> RunCompact(JetdbHost& host, const JetdbLine& line);

}  // namespace zent
