#pragma once

#include <string_view>
#include <vector>

#include "platform/prefix/session/DesktopWindows.h"
#include "platform/x11/X11Connection.h"

namespace zent {

/// The windows of an X11 desktop. The display is the one that the environment names; where there is
/// none, or once it has gone, there are no windows.
class X11DesktopWindows : public DesktopWindows {
 public:
  /// The topmost window of that title. A minimised window counts; one that its program has hidden
  /// does not.
  WindowHandle FindWindowByTitle(std::string_view title) override;

  /// Asks the window itself to close, when it understands that; otherwise the window manager,
  /// which may end its program. Errors: kDeviceUnavailable without a display,
  /// kInvalidProcedureCall for a window that has gone, kActionNotSupported when neither can.
  Status PostClose(WindowHandle window) override;

 private:
  /// The top-level windows of a screen, the topmost first.
  std::vector<xcb_window_t> TopLevelWindows(xcb_window_t root) const;
  bool WindowManagerRuns(xcb_window_t root) const;
  void AddManagedWindows(xcb_window_t parent, int depth, std::vector<xcb_window_t>& found) const;

  X11Connection connection_;
};

}  // namespace zent
