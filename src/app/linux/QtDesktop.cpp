#include "app/linux/Desktop.h"
#include "ui/qt/QtUpdateWindow.h"

namespace zent {

std::unique_ptr<UpdateWindow> MakeGraphicalWindow() {
  if (!HasDesktop()) return nullptr;
  return std::make_unique<QtUpdateWindow>();
}

std::string WindowPart() { return "window: Qt " ZENT_QT_VERSION; }

}  // namespace zent
