// Writes the icon of the program as a file for Windows: icon_file FILE.ico. The small sizes are
// bitmaps with a mask, which every Windows shows; the largest is a PNG, as systems from Vista on
// take it.
#include <QBuffer>
#include <QByteArray>
#include <QDataStream>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>

#include "ui/qt/AppIcon.h"

namespace {

constexpr int kBitmapSizes[] = {16, 24, 32, 48, 64};
constexpr int kPngSize = 256;
constexpr int kSolid = 0x80;           // a pixel of less opacity is masked out
constexpr quint32 kHeaderSize = 40;    // BITMAPINFOHEADER
constexpr quint32 kDirectorySize = 6;  // before the entries
constexpr quint32 kEntrySize = 16;

struct Picture {
  int size;
  QByteArray bytes;
};

QImage IconImage(int size) {
  return zent::AppIcon().pixmap(size, size).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// The lines of the mask, from the bottom up, padded to 32 bits.
void WriteMask(QDataStream& out, const QImage& image) {
  const int size = image.width();
  for (int y = size - 1; y >= 0; --y) {
    const qsizetype words = (size + 31) / 32;
    QByteArray line(words * 4, '\0');
    for (int x = 0; x < size; ++x) {
      const bool masked = qAlpha(image.pixel(x, y)) < kSolid;
      if (masked) line[x / 8] = static_cast<char>(line[x / 8] | (0x80 >> (x % 8)));
    }
    out.writeRawData(line.constData(), static_cast<int>(line.size()));
  }
}

Picture BitmapPicture(int size) {
  const QImage image = IconImage(size);
  Picture picture{size, {}};
  QDataStream out(&picture.bytes, QIODevice::WriteOnly);
  out.setByteOrder(QDataStream::LittleEndian);
  // Twice as high: colours, then the mask.
  out << kHeaderSize << qint32(size) << qint32(2 * size) << quint16(1) << quint16(32);
  for (int field = 0; field < 6; ++field) out << quint32(0);
  for (int y = size - 1; y >= 0; --y) {
    for (int x = 0; x < size; ++x) out << quint32(image.pixel(x, y));
  }
  WriteMask(out, image);
  return picture;
}

Picture PngPicture(int size) {
  Picture picture{size, {}};
  QBuffer buffer(&picture.bytes);
  buffer.open(QIODevice::WriteOnly);
  IconImage(size).save(&buffer, "PNG");
  return picture;
}

QByteArray IconFile(const QList<Picture>& pictures) {
  QByteArray file;
  QDataStream out(&file, QIODevice::WriteOnly);
  out.setByteOrder(QDataStream::LittleEndian);
  out << quint16(0) << quint16(1) << quint16(pictures.size());
  quint32 offset = kDirectorySize + kEntrySize * static_cast<quint32>(pictures.size());
  for (const Picture& picture : pictures) {
    const auto edge = static_cast<quint8>(picture.size);  // 256 is written as 0
    const auto length = static_cast<quint32>(picture.bytes.size());
    out << edge << edge << quint8(0) << quint8(0) << quint16(1) << quint16(32) << length << offset;
    offset += length;
  }
  for (const Picture& picture : pictures) file.append(picture.bytes);
  return file;
}

}  // namespace

int main(int argc, char** argv) {
  const QGuiApplication application(argc, argv);
  if (argc != 2) return 2;
  QList<Picture> pictures;
  for (const int size : kBitmapSizes) pictures.append(BitmapPicture(size));
  pictures.append(PngPicture(kPngSize));
  const QByteArray contents = IconFile(pictures);
  QFile file(QString::fromLocal8Bit(argv[1]));
  const bool written = file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
  return written ? 0 : 1;
}
