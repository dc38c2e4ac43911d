#pragma once

#include <memory>

#include "base/Status.h"
#include "platform/Processes.h"
#include "platform/prefix/session/HostCommand.h"

namespace zent {

/// Starts a child of ours that is waited for, in a session of its own, with the errors of
/// StartDetached. Its standard error is kept, the other streams are empty, none of our descriptors
/// is open in it, and a standard error that nobody reads any more does not end it.
///
/// The end of a child is lost to a process that ignores SIGCHLD, so that is given up.
Result<std::unique_ptr<RunningProgram>> StartWaited(const HostCommand& command);

}  // namespace zent
