#include "odbc/OdbcHandle.h"

#include "odbc/OdbcCalls.h"

namespace zent::odbc {

OdbcHandle::~OdbcHandle() {
  if (handle_ != nullptr) calls_->free_handle(type_, handle_);
}

}  // namespace zent::odbc
