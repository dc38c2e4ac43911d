#pragma once

#include <xcb/xcb.h>

#include <memory>
#include <string_view>

namespace zent::testing {

/// A plain window of the test itself, without any toolkit: says of itself only what it is told to.
class OwnWindow {
 public:
  OwnWindow();
  xcb_window_t id() const { return id_; }
  /// A property of the type STRING, which is Latin-1.
  void SetLatin1(const char* property, std::string_view bytes) const;
  void SetUtf8(const char* property, std::string_view text) const;
  /// A property that holds windows or atoms, of this window or of the root.
  void SetNumbers(xcb_window_t window, const char* property, xcb_atom_t type,
                  std::initializer_list<std::uint32_t> numbers) const;
  void Show() const;
  /// Makes it the child of `frame`, as a window manager does.
  void PutInto(const OwnWindow& frame) const;
  xcb_window_t root() const { return root_; }
  xcb_atom_t Atom(std::string_view name) const;

 private:
  std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection_;
  xcb_window_t root_ = 0;
  xcb_window_t id_ = 0;
};

}  // namespace zent::testing
