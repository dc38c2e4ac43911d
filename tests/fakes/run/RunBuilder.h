#pragma once

#include <string>
#include <string_view>

#include "driver/run/UpdateRun.h"
#include "fakes/FakeShellLinks.h"
#include "fakes/FakeSystemInfo.h"
#include "fakes/MemoryFileSystem.h"
#include "fakes/MemoryRegistry.h"
#include "fakes/run/RecordingObserver.h"
#include "fakes/ui/FakeClock.h"
#include "fakes/ui/FakeProcesses.h"
#include "fakes/ui/FakeShell.h"
#include "fakes/ui/RecordingWindow.h"
#include "lib/TokenList.h"
#include "platform/prefix/settings/PrefixSettingsFiles.h"
#include "platform/prefix/version/PrefixVersionResources.h"

namespace zent::testing {

/// A machine in memory: ports that keep state and record. Drive C has a Windows folder, drive D the
/// package folder.
class MemoryMachine {
 public:
  MemoryMachine();

  MemoryFileSystem files;
  MemoryRegistry registry;
  FakeSystemInfo system;
  PrefixSettingsFiles settings;
  FakeProcesses processes;
  FakeShell shell;
  FakeClock clock;
  PrefixVersionResources versions;
  FakeShellLinks links;
  Platform platform;

  /// Installs Korvo: App Paths entry, folders of the system and of the user, last run, settings.
  void InstallKorvo();
};

/// A run over such a machine, its state filled as after a start: Korvo in C:\Korvo\, its data in
/// D:\Data\, the package in D:\Package\.
class RunBuilder {
 public:
  explicit RunBuilder(RunOptions options = {});

  MemoryMachine machine;
  RecordingWindow window;
  RecordingObserver observer;
  UpdateRun run;

  /// What the run said, message by message.
  const std::vector<std::string>& messages() const { return observer.messages; }
  /// Runs a handler as the interpreter does, with a record of its own, and returns that record.
  CommandRecord Call(Status (*handler)(UpdateRun&, const TokenList&), const TokenList& tokens);
};

}  // namespace zent::testing
