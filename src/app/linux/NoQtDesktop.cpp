#include "app/linux/Desktop.h"

namespace zent {

std::unique_ptr<UpdateWindow> MakeGraphicalWindow() { return nullptr; }

std::string WindowPart() { return "window: terminal only"; }

}  // namespace zent
