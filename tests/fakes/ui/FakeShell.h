#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Shell.h"

namespace zent::testing {

/// A desktop of named windows that records what is asked of it. It opens any address and leaves it
/// to the test to look at it.
class FakeShell : public Shell {
 public:
  struct Window {
    std::string title;
    WindowHandle handle = WindowHandle::None;
    /// How often the window is still found after it was asked to close; -1: for ever.
    int looks_until_closed = 0;
    bool asked_to_close = false;
  };

  Status OpenAddress(std::string_view address) override;
  WindowHandle FindWindowByTitle(std::string_view title) override;
  Status PostClose(WindowHandle window) override;
  bool AcquireShutdownPrivilege() override;
  Status EndSession(std::uint32_t action) override;

  /// Opens a window; see Window::looks_until_closed.
  void AddWindow(std::string title, int looks_until_closed = 0);

  Status open_address;                  ///< what OpenAddress returns
  Status post_close;                    ///< what PostClose returns for an open window
  Status end_session;                   ///< what EndSession returns
  bool privilege = true;                ///< what AcquireShutdownPrivilege returns
  std::vector<Window> windows;          ///< those open
  std::vector<std::string> addresses;   ///< given to OpenAddress
  std::vector<std::string> searched;    ///< titles given to FindWindowByTitle
  std::vector<std::string> closed;      ///< titles of the windows given to PostClose
  std::vector<std::uint32_t> sessions;  ///< actions given to EndSession
  int privilege_calls = 0;

 private:
  std::uint64_t next_handle_ = 100;
};

}  // namespace zent::testing
