#pragma once

#include <windows.h>

namespace zent {

/// While it is on, a user who ends the session reads why `window` holds that up. Systems before
/// Vista only hold it up.
class ShutdownBlock {
 public:
  explicit ShutdownBlock(HWND window) : window_(window) {}
  void Set(bool on);

 private:
  HWND window_;
};

}  // namespace zent
