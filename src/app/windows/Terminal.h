#pragma once

#include <windows.h>

#include "platform/win32/UniqueHandle.h"

namespace zent {

/// The standard input and outputs of this program. A program with windows is started without a
/// console: what its caller has redirected is there from the start, the rest only once a console
/// has been taken.
class Terminal {
 public:
  Terminal();

  /// Takes the console of whoever started the program for what is not redirected. Does nothing
  /// where the caller has none, and on systems before XP, which have no such call.
  void JoinCaller();
  /// As JoinCaller; where that gives none, opens a console of its own.
  void Open();

  /// Each is null where there is none.
  HANDLE input() const { return input_; }
  HANDLE output() const { return output_; }
  HANDLE error() const { return error_; }

 private:
  void TakeConsole();

  UniqueHandle console_input_;
  UniqueHandle console_output_;
  HANDLE input_;
  HANDLE output_;
  HANDLE error_;
};

}  // namespace zent
