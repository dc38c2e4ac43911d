#include "database/TranslateSQL.h"

#include "database/DBFuncs.h"
#include "database/SQLFuncs.h"

namespace zent {

std::string TranslateSQL(const UpdateRun& run, std::string_view statement) {
  if (run.database.kind == kMSAccess) return std::string(statement);
  return TranslateStatement(statement, run.database.kind, ReadIsOracle(run.platform));
}

}  // namespace zent
