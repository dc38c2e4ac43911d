#include "database/engines/jet/HostStorage.h"

#include "jet/host/posix/PosixStorage.h"

namespace zent::testing {

std::unique_ptr<jet::Storage> HostStorage() { return std::make_unique<jet::PosixStorage>(); }

}  // namespace zent::testing
