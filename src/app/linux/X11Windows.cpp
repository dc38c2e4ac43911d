#include "app/linux/Desktop.h"
#include "platform/x11/X11DesktopWindows.h"

namespace zent {

std::unique_ptr<DesktopWindows> MakeDesktopWindows() {
  return std::make_unique<X11DesktopWindows>();
}

}  // namespace zent
