#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "app/linux/PrefixStorage.h"
#include "base/Status.h"
#include "platform/Platform.h"
#include "platform/posix/UniqueFd.h"
#include "platform/prefix/files/Drives.h"
#include "platform/prefix/files/PrefixFileSystem.h"
#include "platform/prefix/links/PrefixShellLinks.h"
#include "platform/prefix/registry/PrefixRegistry.h"
#include "platform/prefix/registry/PrefixSystemInfo.h"
#include "platform/prefix/session/DesktopWindows.h"
#include "platform/prefix/session/PosixClock.h"
#include "platform/prefix/session/PrefixProcesses.h"
#include "platform/prefix/session/PrefixShell.h"
#include "platform/prefix/session/ProgramLocator.h"
#include "platform/prefix/session/Wine.h"
#include "platform/prefix/settings/PrefixSettingsFiles.h"
#include "platform/prefix/version/PrefixVersionResources.h"

namespace zent {

/// A machine on disk, opened for one run: its adapters, and the lock that keeps other runs away.
class PrefixMachine {
 public:
  struct Options {
    std::filesystem::path folder;
    std::filesystem::path package;
    bool follow_profile_links = false;
    std::string path_list;              ///< where programs of the host are looked for: $PATH
    DesktopWindows* windows = nullptr;  ///< of the display; outlives the machine
  };

  /// Opens the machine and makes the package folder reachable on it. Errors: kPathNotFound or
  /// kFileNotFound when there is no machine, kPermissionDenied when it is in use by another run or
  /// by Wine, others when it is damaged or out of reach.
  static Result<std::unique_ptr<PrefixMachine>> Open(const Options& options);

  const Platform& platform() const { return *platform_; }
  /// Its Access files.
  jet::Storage& databases() { return *databases_; }
  /// The package folder's path on the machine.
  const std::string& package() const { return package_; }

 private:
  /// Programs are looked up among the machine's files.
  class Programs final : public ProgramLocator {
   public:
    explicit Programs(PrefixFileSystem& files) : files_(files) {}
    Result<std::filesystem::path> HostPath(std::string_view windows_path) override {
      return files_.HostPath(windows_path);
    }

   private:
    PrefixFileSystem& files_;
  };

  PrefixMachine() = default;
  Status Lock(const std::filesystem::path& folder);
  void BuildAdapters(const Options& options);

  UniqueFd lock_;
  PosixClock clock_;
  std::string package_;
  std::unique_ptr<PrefixRegistry> registry_;
  std::optional<Drives> drives_;
  std::optional<PrefixFileSystem> files_;
  std::optional<PrefixStorage> databases_;
  std::optional<PrefixSystemInfo> system_;
  std::optional<PrefixSettingsFiles> settings_;
  std::optional<Programs> programs_;
  std::optional<Wine> wine_;
  std::optional<PrefixProcesses> processes_;
  std::optional<PrefixShell> shell_;
  std::optional<PrefixShellLinks> links_;
  std::optional<PrefixVersionResources> versions_;
  std::optional<Platform> platform_;
};

}  // namespace zent
