#include <xcb/xcb.h>

#include <QFileInfo>
#include <QLibraryInfo>
#include <QtGlobal>
#include <memory>

#include "ui/qt/QtUpdateWindow.h"

namespace zent {
namespace {

bool HasX11() {
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
      xcb_connect(nullptr, nullptr), &xcb_disconnect);
  return xcb_connection_has_error(connection.get()) == 0;
}

/// A Wayland session serves only a Qt that has the plugin for it.
bool HasWayland() {
  if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) return false;
  const QString plugins = QLibraryInfo::path(QLibraryInfo::PluginsPath);
  return QFileInfo::exists(plugins + "/platforms/libqwayland-generic.so");
}

}  // namespace

bool HasDesktop() {
  // A platform that the user names, other than X11, is taken at the user's word.
  const QString platform = qEnvironmentVariable("QT_QPA_PLATFORM");
  if (!platform.isEmpty() && !platform.startsWith("xcb")) return true;
  return HasX11() || (platform.isEmpty() && HasWayland());
}

}  // namespace zent
