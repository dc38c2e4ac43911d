#pragma once

#include <cstdint>
#include <string_view>

#include "base/Status.h"

namespace zent {

/// A top-level window of another program; None when there is no such window.
enum class WindowHandle : std::uint64_t { None = 0 };

/// What ends a session (ExitWindowsEx): one of the first three, with kForce added to it.
inline constexpr std::uint32_t kShutDown = 1;
inline constexpr std::uint32_t kRestart = 2;
inline constexpr std::uint32_t kPowerOff = 8;
inline constexpr std::uint32_t kForce = 16;  ///< also end programs that hang

/// The desktop and the session of the machine.
class Shell {
 public:
  virtual ~Shell() = default;

  /// Opens a web address in the user's browser (ShellExecute "Open"). Only http and https are
  /// opened; any other address is kInvalidProcedureCall.
  virtual Status OpenAddress(std::string_view address) = 0;

  /// The first top-level window whose title equals `title` without regard to case (FindWindow). A
  /// session without a display has no windows.
  virtual WindowHandle FindWindowByTitle(std::string_view title) = 0;
  /// Asks the window to close, without waiting (PostMessage WM_CLOSE).
  virtual Status PostClose(WindowHandle window) = 0;

  /// The three steps to the right to shut the machine down (OpenProcessToken with access mask 40,
  /// LookupPrivilegeValue "SeShutdownPrivilege", AdjustTokenPrivileges); false when one fails. A
  /// system without such rights says true.
  virtual bool AcquireShutdownPrivilege() = 0;
  /// Ends the session of the machine being serviced, never of another; `action` as above.
  virtual Status EndSession(std::uint32_t action) = 0;
};

}  // namespace zent
