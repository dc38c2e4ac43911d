#include "jet/dao/HostFiles.h"
#include "jet/host/win32/Win32Storage.h"

namespace zent::jet::testing {

std::unique_ptr<Storage> HostFiles() { return std::make_unique<Win32Storage>(); }

}  // namespace zent::jet::testing
