#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zent {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
/// A reply of the X server; null when the request failed, as for a window that has gone.
template <typename T>
using X11Reply = std::unique_ptr<T, FreeReply>;

/// A connection to the X server of the session, and what its windows say of themselves. A window
/// may go at any time: its properties then read as empty.
class X11Connection {
 public:
  /// Connects to the display that the environment names; ok() tells whether that worked, and
  /// whether the server is still there.
  X11Connection();
  bool ok() const { return xcb_connection_has_error(connection_.get()) == 0; }

  /// The root windows of all screens.
  std::vector<xcb_window_t> Roots() const;
  /// The windows below `window`, the topmost first.
  std::vector<xcb_window_t> Children(xcb_window_t window) const;
  bool HasProperty(xcb_window_t window, const char* property) const;
  /// The numbers of a property: windows, atoms.
  std::vector<xcb_atom_t> Numbers(xcb_window_t window, const char* property) const;
  bool HasAtom(xcb_window_t window, const char* property, const char* atom) const;
  /// The title in UTF-8, the one set for international text first; empty when there is none.
  std::string Title(xcb_window_t window) const;
  /// True for a window on the screen that a window manager would take care of.
  bool IsShownTopLevel(xcb_window_t window) const;
  bool Exists(xcb_window_t window) const;
  /// The root of the window's screen; 0 when the window has gone.
  xcb_window_t RootOf(xcb_window_t window) const;

  xcb_atom_t Atom(std::string_view name) const;
  /// Sends a message of five numbers about `window` to `target`; true when the server took it.
  bool Send(xcb_window_t target, xcb_window_t window, const char* message,
            const std::vector<std::uint32_t>& numbers, std::uint32_t event_mask) const;

 private:
  struct Bytes {
    xcb_atom_t type = 0;
    std::string data;
  };
  Bytes Property(xcb_window_t window, const char* property) const;

  std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection_;
};

}  // namespace zent
