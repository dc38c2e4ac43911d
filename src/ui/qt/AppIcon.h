#pragma once

#include <QIcon>

namespace zent {

/// The icon of the program, drawn in the sizes that desktops ask for: an arrow that comes down into
/// an open box.
QIcon AppIcon();

}  // namespace zent
