#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "dataupdate/customisation/CustomisationComponent.h"
#include "driver/run/UpdateRun.h"
#include "platform/Processes.h"

namespace zent {

/// The component's file, in the application's folder.
inline constexpr std::string_view kCustomisationProgram = "ZentCustomize.exe";
/// Its exit codes: the work is done, and a database that it cannot open. Any other is the number of
/// its error, which its standard error describes.
inline constexpr std::uint32_t kCustomisationDone = 0;
inline constexpr std::uint32_t kCustomisationNotOpened = 2;
/// What the largest databases take, and more: nobody waits longer for a component that hangs.
inline constexpr std::chrono::minutes kCustomisationLimit{30};

/// The component as a program of the installation, with the database, the folder of the
/// customisations and the folder for work files as arguments, the folders without their last
/// backslash.
///
/// The window stays responsive. When it is closed, or the limit is reached, the program is left
/// running, since it may be in the middle of a change to the database, and the error says so.
class CustomisationProgram : public CustomisationComponent {
 public:
  explicit CustomisationProgram(UpdateRun& run) : run_(run) {}

  Result<CustomisationOutcome> Apply(const CustomisationTask& task) override;

 private:
  Result<ProgramEnd> WaitForEnd(RunningProgram& program);
  std::string Path() const;
  RuntimeError LeftRunning(std::string_view reason) const;

  UpdateRun& run_;
};

}  // namespace zent
