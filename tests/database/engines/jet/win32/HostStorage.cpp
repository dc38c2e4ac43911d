#include "database/engines/jet/HostStorage.h"

#include "jet/host/win32/Win32Storage.h"

namespace zent::testing {

std::unique_ptr<jet::Storage> HostStorage() { return std::make_unique<jet::Win32Storage>(); }

}  // namespace zent::testing
