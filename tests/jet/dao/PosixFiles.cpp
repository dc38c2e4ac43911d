#include "jet/dao/HostFiles.h"
#include "jet/host/posix/PosixStorage.h"

namespace zent::jet::testing {

std::unique_ptr<Storage> HostFiles() { return std::make_unique<PosixStorage>(); }

}  // namespace zent::jet::testing
