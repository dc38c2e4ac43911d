#pragma once

#include <atomic>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "scenarios/HostProgram.h"
#include "scenarios/MachineTree.h"
#include "scenarios/compare/RegistryText.h"

namespace zent::testing {

/// What a machine under Wine holds: its files by their path in the prefix ("drive_c/..."), and its
/// registry files by name.
struct PrefixState {
  MachineTree files;
  std::map<std::string, RegistryText> registry;
};

/// What happened between two states, in the form of two trees: in `before` every registry file is
/// empty, in `after` it is the list of its changes.
struct PrefixChanges {
  MachineTree before;
  MachineTree after;
};
PrefixChanges ChangesBetween(const PrefixState& before, const PrefixState& after);

/// A Wine prefix of its own in `folder`/prefix: a machine (a folder as the native program services
/// it) with the system's own files below it. Drive D: is `folder`/package, drive E: is `folder`
/// itself. There are no other drives and no links to the host's home folder.
class WinePrefix {
 public:
  /// `sample` is the machine that `machine` was made of; values that were taken off are taken off
  /// here as well.
  WinePrefix(const std::filesystem::path& sample, const std::filesystem::path& machine,
             const std::filesystem::path& folder);
  /// Ends whatever still runs in it.
  ~WinePrefix();
  WinePrefix(const WinePrefix&) = delete;
  WinePrefix& operator=(const WinePrefix&) = delete;

  /// Runs a Windows program to its end; its exit code's low eight bits are what the host sees.
  /// `program` is a path of the host or of the machine. It is killed after `seconds`.
  ProgramEnd Run(const std::string& program, const std::vector<std::string>& arguments,
                 double seconds = 60) const;
  /// Waits until everything in it has ended: then its registry is on the disk.
  void WaitForEnd() const;
  PrefixState State() const;

  std::filesystem::path drive_c() const { return prefix_ / "drive_c"; }

 private:
  std::vector<std::string> WithPrefix(std::vector<std::string> command) const;

  std::filesystem::path folder_;
  std::filesystem::path prefix_;
  mutable std::atomic<int> runs_ = 0;
};

}  // namespace zent::testing
