#pragma once

#include <windows.h>

#include "ui/win32/Fonts.h"

namespace zent {

/// What the layout of the window goes by, in pixels.
struct LayoutSizes {
  DialogUnits text;      ///< of labels and buttons
  DialogUnits log;       ///< of the message box
  int step_width = 0;    ///< of the label beside the progress bar
  int button_width = 0;  ///< of the widest text of a button
};

/// Where the controls stand inside the window.
struct MainLayout {
  RECT caption;
  RECT log;
  RECT step;
  RECT bar;
  RECT install;
  RECT go_on;
  RECT close;
};

/// From top to bottom: caption, message box, which takes all that is left, progress, buttons.
MainLayout LayOutMain(SIZE client, const LayoutSizes& sizes);

/// The smallest inside of the window at which everything can be read.
SIZE SmallestClient(const LayoutSizes& sizes);

/// The inside of the window at first: room for lines of usual length.
SIZE UsualClient(const LayoutSizes& sizes);

}  // namespace zent
