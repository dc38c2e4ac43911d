#pragma once

#include "platform/Shell.h"

namespace zent {

/// The desktop and the session of the Windows that this program runs on.
class Win32Shell : public Shell {
 public:
  /// A system without a browser is kDeviceUnavailable.
  Status OpenAddress(std::string_view address) override;
  WindowHandle FindWindowByTitle(std::string_view title) override;
  /// kInvalidProcedureCall for a window that has gone, kPermissionDenied for one of a program with
  /// more rights.
  Status PostClose(WindowHandle window) override;
  /// Also false when the user does not hold the right.
  bool AcquireShutdownPrivilege() override;
  Status EndSession(std::uint32_t action) override;
};

}  // namespace zent
