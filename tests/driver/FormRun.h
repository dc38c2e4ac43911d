#pragma once

#include <string>
#include <string_view>

#include "driver/frmZentUpdate.h"
#include "fakes/run/RunBuilder.h"

namespace zent::testing {

/// The window's run over a machine with an installed Korvo and a package in D:\Package, whose
/// ZentUpdate.ini is `list`.
struct FormRun {
  explicit FormRun(std::string_view list)
      : form(machine.platform, window, observer, {}, R"(D:\Package)") {
    machine.InstallKorvo();
    machine.files.PutFile(R"(D:\Package\ZentUpdate.ini)", list);
  }
  const std::vector<std::string>& messages() const { return observer.messages; }

  MemoryMachine machine;
  RecordingWindow window;
  RecordingObserver observer;
  frmZentUpdate form;
};

}  // namespace zent::testing
