#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace zent {

/// Text of the program (UTF-8) as Qt takes it.
QString ToQt(std::string_view text);

/// The same for labels, which end lines with a line feed alone.
QString ToLabel(std::string_view text);

/// Text that Qt gave, as UTF-8.
std::string FromQt(const QString& text);

}  // namespace zent
