#include "ui/qt/QtText.h"

namespace zent {

QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString ToLabel(std::string_view text) { return ToQt(text).replace("\r\n", "\n"); }

std::string FromQt(const QString& text) { return text.toUtf8().toStdString(); }

}  // namespace zent
