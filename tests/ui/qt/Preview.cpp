// Shows the window, or one of its boxes, in a state worth looking at, until it is ended:
// Preview SCENE [dark]. For pictures of it and for changes of its looks.
#include <QApplication>
#include <QPalette>
#include <QStyleFactory>
#include <string_view>

#include "ui/PreviewScene.h"
#include "ui/qt/QtUpdateWindow.h"

namespace zent {
namespace {

QPalette DarkPalette() {
  const QColor window(0x2b, 0x2d, 0x30);
  QPalette palette(QColor(0x3c, 0x3f, 0x41), window);
  palette.setColor(QPalette::Base, QColor(0x1e, 0x1f, 0x22));
  palette.setColor(QPalette::Highlight, QColor(0x2f, 0x65, 0xca));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  return palette;
}

}  // namespace
}  // namespace zent

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  if (argc > 2 && std::string_view(argv[2]) == "dark") {
    QApplication::setPalette(zent::DarkPalette());
  }
  zent::QtUpdateWindow window;
  zent::testing::PreviewScene scene(window, argc > 1 ? argv[1] : "running");
  window.Run(scene);
}
