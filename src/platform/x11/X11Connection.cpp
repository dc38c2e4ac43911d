#include "platform/x11/X11Connection.h"

#include <algorithm>
#include <cstring>

#include "base/Utf.h"

namespace zent {
namespace {

constexpr std::uint32_t kMostWords = 1U << 20U;  // of a property: 4 MB

/// WM_NAME of the type STRING holds Latin-1.
std::string FromLatin1(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) AppendUtf8(static_cast<unsigned char>(c), text);
  return text;
}

}  // namespace

X11Connection::X11Connection() : connection_(xcb_connect(nullptr, nullptr), &xcb_disconnect) {}

std::vector<xcb_window_t> X11Connection::Roots() const {
  std::vector<xcb_window_t> roots;
  if (!ok()) return roots;
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
  for (; screens.rem > 0; xcb_screen_next(&screens)) roots.push_back(screens.data->root);
  return roots;
}

std::vector<xcb_window_t> X11Connection::Children(xcb_window_t window) const {
  const X11Reply<xcb_query_tree_reply_t> tree(
      xcb_query_tree_reply(connection_.get(), xcb_query_tree(connection_.get(), window), nullptr));
  if (!tree) return {};
  const xcb_window_t* first = xcb_query_tree_children(tree.get());
  std::vector<xcb_window_t> children(first, first + xcb_query_tree_children_length(tree.get()));
  std::reverse(children.begin(), children.end());
  return children;
}

X11Connection::Bytes X11Connection::Property(xcb_window_t window, const char* property) const {
  const X11Reply<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(connection_.get(),
                             xcb_get_property(connection_.get(), 0, window, Atom(property),
                                              XCB_GET_PROPERTY_TYPE_ANY, 0, kMostWords),
                             nullptr));
  if (!reply) return {};
  const auto* data = static_cast<const char*>(xcb_get_property_value(reply.get()));
  const int length = xcb_get_property_value_length(reply.get());
  return {.type = reply->type, .data = std::string(data, static_cast<std::size_t>(length))};
}

bool X11Connection::HasProperty(xcb_window_t window, const char* property) const {
  return Property(window, property).type != XCB_ATOM_NONE;
}

std::vector<xcb_atom_t> X11Connection::Numbers(xcb_window_t window, const char* property) const {
  const Bytes bytes = Property(window, property);
  std::vector<xcb_atom_t> numbers(bytes.data.size() / sizeof(xcb_atom_t));
  if (!numbers.empty()) {
    std::memcpy(numbers.data(), bytes.data.data(), numbers.size() * sizeof(xcb_atom_t));
  }
  return numbers;
}

bool X11Connection::HasAtom(xcb_window_t window, const char* property, const char* atom) const {
  const std::vector<xcb_atom_t> atoms = Numbers(window, property);
  return std::find(atoms.begin(), atoms.end(), Atom(atom)) != atoms.end();
}

std::string X11Connection::Title(xcb_window_t window) const {
  Bytes title = Property(window, "_NET_WM_NAME");
  if (title.type == XCB_ATOM_NONE) title = Property(window, "WM_NAME");
  if (title.type == XCB_ATOM_STRING) title.data = FromLatin1(title.data);
  return title.data.substr(0, title.data.find('\0'));
}

bool X11Connection::IsShownTopLevel(xcb_window_t window) const {
  const X11Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
      connection_.get(), xcb_get_window_attributes(connection_.get(), window), nullptr));
  return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
         attributes->override_redirect == 0;
}

bool X11Connection::Exists(xcb_window_t window) const { return RootOf(window) != XCB_WINDOW_NONE; }

xcb_window_t X11Connection::RootOf(xcb_window_t window) const {
  const X11Reply<xcb_get_geometry_reply_t> place(xcb_get_geometry_reply(
      connection_.get(), xcb_get_geometry(connection_.get(), window), nullptr));
  return place ? place->root : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_atom_t X11Connection::Atom(std::string_view name) const {
  const X11Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
      connection_.get(),
      xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
      nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

bool X11Connection::Send(xcb_window_t target, xcb_window_t window, const char* message,
                         const std::vector<std::uint32_t>& numbers,
                         std::uint32_t event_mask) const {
  xcb_client_message_event_t event = {};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = Atom(message);
  std::copy_n(numbers.begin(), std::min<std::size_t>(numbers.size(), 5),
              std::begin(event.data.data32));
  // The server reads 32 bytes from here, the exact size of the event.
  const X11Reply<xcb_generic_error_t> error(xcb_request_check(
      connection_.get(), xcb_send_event_checked(connection_.get(), 0, target, event_mask,
                                                reinterpret_cast<const char*>(&event))));
  return !error && ok();
}

}  // namespace zent
