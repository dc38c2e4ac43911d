#pragma once

#include <string>
#include <string_view>

#include "fakes/FakeSystemInfo.h"
#include "fakes/MemoryFileSystem.h"
#include "platform/prefix/settings/PrefixSettingsFiles.h"

namespace zent::testing {

/// Settings files over a machine in memory, with an empty folder "C:\Korvo".
struct SettingsMachine {
  SettingsMachine() { files.PutFolder(R"(C:\Korvo)"); }

  MemoryFileSystem files;
  FakeSystemInfo system;
  PrefixSettingsFiles settings{files, system};
};

}  // namespace zent::testing
