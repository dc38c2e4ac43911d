#include "app/linux/Desktop.h"

namespace zent {

std::unique_ptr<DesktopWindows> MakeDesktopWindows() { return nullptr; }

}  // namespace zent
