#include "platform/x11/X11DesktopWindows.h"

#include <algorithm>

#include "base/CaseFold.h"

namespace zent {
namespace {

/// How far below the root a window manager may have put a window: frame, border, window.
constexpr int kFrameDepth = 3;
/// "On behalf of the user", so that the window manager does not hold the message back.
constexpr std::uint32_t kFromUser = 2;

}  // namespace

WindowHandle X11DesktopWindows::FindWindowByTitle(std::string_view title) {
  for (const xcb_window_t root : connection_.Roots()) {
    for (const xcb_window_t window : TopLevelWindows(root)) {
      if (SameName(connection_.Title(window), title)) return WindowHandle{window};
    }
  }
  return WindowHandle::None;
}

Status X11DesktopWindows::PostClose(WindowHandle window) {
  if (!connection_.ok()) return StandardError(kDeviceUnavailable);
  const auto id = static_cast<xcb_window_t>(window);
  const xcb_window_t root = connection_.RootOf(id);
  if (root == XCB_WINDOW_NONE) return StandardError(kInvalidProcedureCall);

  bool sent = false;
  if (connection_.HasAtom(id, "WM_PROTOCOLS", "WM_DELETE_WINDOW")) {
    const xcb_atom_t close = connection_.Atom("WM_DELETE_WINDOW");
    sent = connection_.Send(id, id, "WM_PROTOCOLS", {close, XCB_CURRENT_TIME},
                            XCB_EVENT_MASK_NO_EVENT);
  } else if (WindowManagerRuns(root) &&
             connection_.HasAtom(root, "_NET_SUPPORTED", "_NET_CLOSE_WINDOW")) {
    sent =
        connection_.Send(root, id, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, kFromUser},
                         XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  } else {
    return StandardError(kActionNotSupported);
  }
  return sent ? Status() : StandardError(kInvalidProcedureCall);
}

std::vector<xcb_window_t> X11DesktopWindows::TopLevelWindows(xcb_window_t root) const {
  if (WindowManagerRuns(root)) {
    // The stacking order begins with the lowest window, the other list with the oldest.
    for (const char* list : {"_NET_CLIENT_LIST_STACKING", "_NET_CLIENT_LIST"}) {
      if (!connection_.HasProperty(root, list)) continue;
      std::vector<xcb_window_t> windows = connection_.Numbers(root, list);
      std::reverse(windows.begin(), windows.end());
      return windows;
    }
  }
  std::vector<xcb_window_t> windows;
  AddManagedWindows(root, kFrameDepth, windows);
  if (!windows.empty()) return windows;

  // No window manager at all: what is on the screen.
  for (const xcb_window_t window : connection_.Children(root)) {
    if (connection_.IsShownTopLevel(window)) windows.push_back(window);
  }
  return windows;
}

bool X11DesktopWindows::WindowManagerRuns(xcb_window_t root) const {
  // The list of a window manager that has ended stays; its own window, which names itself, does
  // not.
  const auto check = connection_.Numbers(root, "_NET_SUPPORTING_WM_CHECK");
  return !check.empty() && connection_.Numbers(check[0], "_NET_SUPPORTING_WM_CHECK") == check;
}

void X11DesktopWindows::AddManagedWindows(xcb_window_t parent, int depth,
                                          std::vector<xcb_window_t>& found) const {
  for (const xcb_window_t window : connection_.Children(parent)) {
    // Every window manager marks the windows that it looks after.
    if (connection_.HasProperty(window, "WM_STATE")) {
      found.push_back(window);
    } else if (depth > 1) {
      AddManagedWindows(window, depth - 1, found);
    }
  }
}

}  // namespace zent
