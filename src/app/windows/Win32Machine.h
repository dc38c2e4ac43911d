#pragma once

#include <memory>
#include <optional>
#include <string>

#include "base/Status.h"
#include "platform/Platform.h"
#include "platform/win32/UniqueHandle.h"
#include "platform/win32/files/Win32FileSystem.h"
#include "platform/win32/links/Win32ShellLinks.h"
#include "platform/win32/registry/Win32Registry.h"
#include "platform/win32/session/Win32Clock.h"
#include "platform/win32/session/Win32Processes.h"
#include "platform/win32/session/Win32Shell.h"
#include "platform/win32/session/Win32SystemInfo.h"
#include "platform/win32/settings/Win32SettingsFiles.h"
#include "platform/win32/version/Win32VersionResources.h"

namespace zent {

/// The Windows that the program runs on, for one run: its adapters, and the lock that keeps other
/// runs away.
class Win32Machine {
 public:
  /// `package` is the full path of the package folder; it becomes the current folder of the
  /// process. Errors: kPermissionDenied when another run is at work, kPathNotFound when the folder
  /// cannot be entered.
  static Result<std::unique_ptr<Win32Machine>> Open(const std::string& package);

  const Platform& platform() const { return platform_; }
  const std::string& package() const { return package_; }

 private:
  Win32Machine(UniqueHandle lock, const std::string& package)
      : lock_(std::move(lock)), package_(package), files_(package) {}

  UniqueHandle lock_;
  std::string package_;
  Win32FileSystem files_;
  Win32Registry registry_;
  Win32SettingsFiles settings_;
  Win32SystemInfo system_;
  Win32Processes processes_;
  Win32Shell shell_;
  Win32Clock clock_;
  Win32VersionResources versions_;
  Win32ShellLinks links_;
  Platform platform_{files_, registry_, settings_, system_, processes_,
                     shell_, clock_,    versions_, links_};
};

}  // namespace zent
