#pragma once

#include <memory>
#include <string>

#include "platform/prefix/session/DesktopWindows.h"
#include "ui/UpdateWindow.h"

/// What this build has of a desktop. Each function has one implementation with the library behind
/// it and one without; the build picks.
namespace zent {

/// The graphical window; null when no desktop can be reached or the build has none.
std::unique_ptr<UpdateWindow> MakeGraphicalWindow();

/// Which window the build has, for the version text: "window: Qt 6.4.2".
std::string WindowPart();

/// The windows of other programs; null when the build cannot see them.
std::unique_ptr<DesktopWindows> MakeDesktopWindows();

}  // namespace zent
