#pragma once

#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Processes.h"
#include "platform/Registry.h"
#include "platform/SettingsFiles.h"
#include "platform/Shell.h"
#include "platform/ShellLinks.h"
#include "platform/SystemInfo.h"
#include "platform/VersionResources.h"

namespace zent {

/// The ports of one machine. Whoever builds the adapters owns them and outlives this.
struct Platform {
  FileSystem& files;
  Registry& registry;
  SettingsFiles& settings;
  SystemInfo& system;
  Processes& processes;
  Shell& shell;
  Clock& clock;
  VersionResources& versions;
  ShellLinks& links;
};

}  // namespace zent
