#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ui/UpdateWindow.h"

namespace zent::testing {

/// The events of a window by name, in their order; Form_Load also runs what the test gives.
class RecordingEvents : public WindowEvents {
 public:
  explicit RecordingEvents(std::function<void()> on_load = {}) : on_load_(std::move(on_load)) {}

  void Form_Load() override {
    raised.emplace_back("Form_Load");
    if (on_load_) on_load_();
  }
  void cmdClose_Click() override { raised.emplace_back("cmdClose_Click"); }
  void cmdContinue_Click() override { raised.emplace_back("cmdContinue_Click"); }
  void cmdInstall360_Click() override { raised.emplace_back("cmdInstall360_Click"); }

  std::vector<std::string> raised;

 private:
  std::function<void()> on_load_;
};

}  // namespace zent::testing
