#include "ui/qt/AppIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace zent {
namespace {

constexpr int kSizes[] = {16, 22, 24, 32, 48, 64, 128, 256};

/// Draws in a square of 32 units. The outline keeps it visible on light and dark panels alike.
void DrawIcon(QPainter& painter) {
  const QColor ink(0x0f, 0x3d, 0x5c);
  const QPen outline(ink, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);

  painter.setPen(outline);
  painter.setBrush(QColor(0xe8, 0xb4, 0x5a));
  painter.drawRoundedRect(QRectF(3, 15, 26, 14), 2, 2);
  painter.setBrush(QColor(0xf6, 0xd3, 0x92));
  painter.drawPolygon(QPolygonF({{3.8, 15.5}, {8, 10.5}, {24, 10.5}, {28.2, 15.5}}));

  painter.setBrush(QColor(0x2f, 0x9e, 0x8f));
  painter.drawPolygon(
      QPolygonF({{12.5, 2}, {19.5, 2}, {19.5, 13}, {25, 13}, {16, 23.5}, {7, 13}, {12.5, 13}}));
}

}  // namespace

QIcon AppIcon() {
  QIcon icon;
  for (const int size : kSizes) {
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 32.0, size / 32.0);
    DrawIcon(painter);
    painter.end();
    icon.addPixmap(picture);
  }
  return icon;
}

}  // namespace zent
