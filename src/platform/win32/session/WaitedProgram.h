#pragma once

#include <windows.h>

#include <memory>

#include "base/Status.h"
#include "platform/Processes.h"
#include "platform/win32/UniqueHandle.h"

namespace zent {

/// The standard streams of a program that is waited for.
struct WaitedStreams {
  /// Both ends are made for one start.
  static Result<WaitedStreams> Open();

  /// Names the program's ends in what its start takes; it must inherit handles.
  void GiveTo(STARTUPINFOA& startup) const;

  UniqueHandle nothing;         ///< its input and its output; inheritable
  UniqueHandle standard_error;  ///< its end of the pipe; inheritable
  UniqueHandle reader;          ///< our end
};

/// The program of a start that has been made. Close the program's ends of the streams before the
/// first wait.
std::unique_ptr<RunningProgram> WaitFor(UniqueHandle process, UniqueHandle reader);

}  // namespace zent
