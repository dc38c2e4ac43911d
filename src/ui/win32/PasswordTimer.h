#pragma once

#include <windows.h>

namespace zent {

/// Started right before the input box for a password is shown: after 30 milliseconds it looks for
/// the dialog window titled "Enter Password", makes its edit control show stars, and stops itself.
/// Messages of the thread drive it.
class PasswordTimer {
 public:
  PasswordTimer();
  ~PasswordTimer();
  PasswordTimer(const PasswordTimer&) = delete;
  PasswordTimer& operator=(const PasswordTimer&) = delete;

 private:
  UINT_PTR id_;
};

}  // namespace zent
