#include "database/port/OpenedDatabase.h"

#include "base/ErrorNumbers.h"
#include "database/port/EngineErrors.h"

namespace zent {

Status OpenedDatabase::SetRules(std::string_view /*table*/, const TableDefinition& /*definition*/) {
  RuntimeError error = StandardError(kActionNotSupported);
  error.source = kEngineSource;
  return error;
}

Status OpenedDatabase::TakeCounter(std::string_view /*table*/, std::string_view /*from*/) {
  return {};
}

}  // namespace zent
