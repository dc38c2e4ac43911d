#pragma once

#include <string_view>

#include "fakes/FakeShellLinks.h"
#include "fakes/FakeSystemInfo.h"
#include "fakes/MemoryFileSystem.h"
#include "fakes/MemoryRegistry.h"
#include "fakes/ui/FakeClock.h"
#include "fakes/ui/FakeProcesses.h"
#include "fakes/ui/FakeShell.h"
#include "lib/RegFuncs.h"
#include "platform/Platform.h"
#include "platform/prefix/settings/PrefixSettingsFiles.h"
#include "platform/prefix/version/PrefixVersionResources.h"

namespace zent::testing {

/// A machine in memory; settings files are real text in its file system.
struct TestMachine {
  MemoryFileSystem files;
  MemoryRegistry registry;
  FakeSystemInfo system;
  PrefixSettingsFiles settings{files, system};
  FakeProcesses processes;
  FakeShell shell;
  FakeClock clock;
  PrefixVersionResources versions{files};
  FakeShellLinks links{files};
  Platform ports{files, registry, settings, system, processes, shell, clock, versions, links};

  /// Sets a folder of the user, or of all users, as the registry names it.
  void UserFolder(std::string_view name, std::string_view path) {
    registry.PutText(KeyHandle::CurrentUser, kShellFoldersKey, name, path);
  }
  void CommonFolder(std::string_view name, std::string_view path) {
    registry.PutText(KeyHandle::LocalMachine, kShellFoldersKey, name, path);
  }
};

}  // namespace zent::testing
