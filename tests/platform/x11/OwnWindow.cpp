#include "platform/x11/OwnWindow.h"

#include <cstdlib>
#include <vector>

namespace zent::testing {
namespace {

/// Waits until the server has done all that was asked before.
void Sync(xcb_connection_t* connection) {
  std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

}  // namespace

OwnWindow::OwnWindow() : connection_(xcb_connect(nullptr, nullptr), &xcb_disconnect) {
  const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
  root_ = screen->root;
  id_ = xcb_generate_id(connection_.get());
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, id_, root_, 10, 10, 100, 80, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
  Sync(connection_.get());
}

xcb_atom_t OwnWindow::Atom(std::string_view name) const {
  xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
      connection_.get(),
      xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
      nullptr);
  const xcb_atom_t atom = reply->atom;
  std::free(reply);
  return atom;
}

void OwnWindow::SetLatin1(const char* property, std::string_view bytes) const {
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, id_, Atom(property),
                      XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(bytes.size()), bytes.data());
  Sync(connection_.get());
}

void OwnWindow::SetUtf8(const char* property, std::string_view text) const {
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, id_, Atom(property),
                      Atom("UTF8_STRING"), 8, static_cast<std::uint32_t>(text.size()), text.data());
  Sync(connection_.get());
}

void OwnWindow::SetNumbers(xcb_window_t window, const char* property, xcb_atom_t type,
                           std::initializer_list<std::uint32_t> numbers) const {
  const std::vector<std::uint32_t> values(numbers);
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, Atom(property), type, 32,
                      static_cast<std::uint32_t>(values.size()), values.data());
  Sync(connection_.get());
}

void OwnWindow::Show() const {
  xcb_map_window(connection_.get(), id_);
  Sync(connection_.get());
}

void OwnWindow::PutInto(const OwnWindow& frame) const {
  xcb_reparent_window(connection_.get(), id_, frame.id(), 0, 0);
  Sync(connection_.get());
}

}  // namespace zent::testing
