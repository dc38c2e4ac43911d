#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "platform/prefix/registry/PrefixRegistry.h"
#include "support/TempFolder.h"

/// Machines, clocks and other programs for the tests of the registry files.
namespace zent::testing {

/// 2026-11-21 in units of 100 ns since 1601, and the same moment in seconds since 1970.
inline constexpr std::uint64_t kNow = 0x1dd799bcbb4dcc2;
inline constexpr std::string_view kNowInFile = "1795253793";

inline constexpr std::string_view kEmptyUserFile =
    "WINE REGISTRY Version 2\n"
    ";; All keys relative to REGISTRY\\\\User\\\\S-1-5-21-0-0-0-1000\n"
    "\n"
    "#arch=win64\n";
inline constexpr std::string_view kEmptySystemFile =
    "WINE REGISTRY Version 2\n"
    ";; All keys relative to REGISTRY\\\\Machine\n"
    "\n"
    "#arch=win64\n";

/// The text of a file of tests/data/registry.
std::string SampleFile(const std::string& name);

/// The lines of a text, without their breaks.
std::vector<std::string> LinesOf(std::string_view text);

/// True when `lines` are among `all` in that order.
bool AreInOrder(const std::vector<std::string>& lines, const std::vector<std::string>& all);

/// A clock that moves only by being slept on; `on_sleep` runs each time.
class StepClock : public Clock {
 public:
  LocalTime Now() override { return {}; }
  std::chrono::milliseconds Ticks() override { return ticks_; }
  void Sleep(std::chrono::milliseconds time) override {
    ticks_ += time;
    if (on_sleep) on_sleep();
  }

  std::function<void()> on_sleep;

 private:
  std::chrono::milliseconds ticks_{1000};
};

/// A machine with registry files, and a temporary folder of its own for server folders.
class MachineFolder {
 public:
  /// With the sample files, or with the given ones.
  MachineFolder();
  MachineFolder(std::string_view system_file, std::string_view user_file);

  std::string path() const { return (folder_.path() / "machine").string(); }
  std::string temp() const { return (folder_.path() / "tmp").string(); }
  std::string Get(const std::string& name) const { return folder_.Get("machine/" + name); }
  void Put(const std::string& name, std::string_view text) const {
    folder_.Put("machine/" + name, text);
  }
  /// The names of the files in the machine's folder, sorted.
  std::vector<std::string> Names() const;

  /// A registry on this machine; a failed expectation and null when it cannot be opened.
  std::unique_ptr<PrefixRegistry> Open();
  StepClock& clock() { return clock_; }

  /// The folder in which the server of this machine has its lock: upstream's place.
  std::string ServerFolder() const;
  /// ... and the name of that folder alone, "server-801-2af".
  std::string ServerName() const;

 private:
  TempFolder folder_;
  StepClock clock_;
};

/// Another process that holds a write lock on the first byte of a file, as Wine's server does,
/// until it is ended.
class LockHolder {
 public:
  /// Makes the folder and the file `lock` in it.
  explicit LockHolder(const std::string& folder);
  ~LockHolder() { End(); }
  LockHolder(const LockHolder&) = delete;
  LockHolder& operator=(const LockHolder&) = delete;
  void End();

 private:
  pid_t child_ = -1;
};

/// Runs `work` in a child process and gives back its result, 0 to 100; -1 when it ended otherwise.
int RunInChild(const std::function<int()>& work);

/// Makes this process one of an ordinary user for good; false when that is not allowed. A process
/// that is one already stays so.
bool BecomeOrdinaryUser();

/// Shortens for tests: the data of a value, "(none)" when it or its key is missing.
std::string ReadData(Registry& registry, KeyHandle root, std::string_view path,
                     std::string_view name);
/// Creates the key, sets the value, closes the key; the first error.
Status WriteText(Registry& registry, KeyHandle root, std::string_view path, std::string_view name,
                 std::string_view text);

}  // namespace zent::testing
