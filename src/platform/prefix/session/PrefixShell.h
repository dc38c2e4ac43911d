#pragma once

#include <string>

#include "platform/Shell.h"
#include "platform/prefix/session/DesktopWindows.h"
#include "platform/prefix/session/Wine.h"

namespace zent {

/// The desktop of the host's user, and the session of a machine that is kept in a folder.
///
/// An address is opened by "xdg-open"; a host without it is kDeviceUnavailable. What ends is the
/// session of the machine, through Wine's "wineboot", and never the host: where Wine is not
/// installed nothing runs on the machine, so its next start is the restart, and there is nothing to
/// do.
class PrefixShell : public Shell {
 public:
  /// "xdg-open" is looked for in `path_list` at each call. Without `windows` the session has no
  /// display: no window is found, and closing one is kDeviceUnavailable.
  PrefixShell(std::string path_list, const Wine& wine, DesktopWindows* windows = nullptr);

  /// A blank or a control character in the address is refused too: kInvalidProcedureCall.
  Status OpenAddress(std::string_view address) override;
  WindowHandle FindWindowByTitle(std::string_view title) override;
  Status PostClose(WindowHandle window) override;
  /// True: whoever may write the machine may restart it.
  bool AcquireShutdownPrivilege() override { return true; }
  Status EndSession(std::uint32_t action) override;

 private:
  std::string path_list_;
  const Wine& wine_;
  DesktopWindows* windows_;
};

}  // namespace zent
