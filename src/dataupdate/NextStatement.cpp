#include "dataupdate/NextStatement.h"

#include "driver/run/Messages.h"

namespace zent {

bool NextStatement::After(const Status& statement) {
  if (statement.ok()) return true;
  run_.Ask({.text = ErrorText("Error creating links ", statement.error()), .icon = BoxIcon::None});
  run_.Warn(ReasonOf(statement.error()));
  return false;
}

}  // namespace zent
