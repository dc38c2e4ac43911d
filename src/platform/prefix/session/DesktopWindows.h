#pragma once

#include <string_view>

#include "platform/Shell.h"

namespace zent {

/// The top-level windows of the display that this session has.
class DesktopWindows {
 public:
  virtual ~DesktopWindows() = default;
  /// As Shell::FindWindowByTitle.
  virtual WindowHandle FindWindowByTitle(std::string_view title) = 0;
  /// As Shell::PostClose.
  virtual Status PostClose(WindowHandle window) = 0;
};

}  // namespace zent
