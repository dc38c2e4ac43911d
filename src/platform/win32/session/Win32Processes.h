#pragma once

#include <memory>

#include "platform/Processes.h"

namespace zent {

/// Programs of the Windows that this program runs on. The task identifier is the process id. A
/// program for the console gets one of its own. One that asks for an administrator is
/// kPermissionDenied where this program is not run by one.
class Win32Processes : public Processes {
 public:
  Result<std::uint32_t> Start(const Launch& launch) override;
  Result<std::unique_ptr<RunningProgram>> StartWaited(const Launch& launch) override;
};

}  // namespace zent
