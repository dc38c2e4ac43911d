#include "driver/run/BackupName.h"

#include <chrono>

#include "lib/FuncLib.h"

namespace zent {
namespace {

constexpr std::chrono::milliseconds kClockStep{50};

}  // namespace

std::string FreeTimeStampedName(UpdateRun& run, const std::string& path) {
  const Platform& machine = run.platform;
  std::string name = MakeTimeStampedName(path, "Both", machine.clock.Now());
  while (machine.files.Attributes(name).ok()) {
    machine.clock.Sleep(kClockStep);
    run.window.ProcessEvents(std::chrono::milliseconds(0));
    name = MakeTimeStampedName(path, "Both", machine.clock.Now());
  }
  return name;
}

}  // namespace zent
