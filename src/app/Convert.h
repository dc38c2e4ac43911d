#pragma once

#include <string>

#include "app/CommandLine.h"
#include "driver/run/UpdateRun.h"

namespace zent {

/// The conversion of an old database's data as a run of its own in a window. No package is needed.
class ConversionRun final : public WindowEvents {
 public:
  /// All references outlive it. Engines are given to `run()` before the window shows it.
  ConversionRun(const Platform& platform, UpdateWindow& window, RunObserver& observer,
                ConversionLine line);

  /// Opens both databases and converts the second to its end, whatever becomes of the window. The
  /// source is only read; a file that is converted nobody else may have open.
  void Form_Load() override;
  void cmdClose_Click() override { run_.window.Close(); }
  void cmdContinue_Click() override {}
  void cmdInstall360_Click() override {}

  RunResult result() const { return result_; }
  UpdateRun& run() { return run_; }

 private:
  Status Convert();

  UpdateRun run_;
  RunObserver& observer_;
  ConversionLine line_;
  RunResult result_ = RunResult::Failed;
};

}  // namespace zent
