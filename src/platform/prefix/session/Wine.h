#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "platform/Processes.h"
#include "platform/prefix/session/HostCommand.h"

namespace zent {

/// Where Debian keeps the loader when no program of its name is on the PATH.
inline constexpr const char* kWineLoaderOfDebian = "/usr/lib/wine/wine64";

/// Wine on this host, and the machine that it runs programs in.
class Wine {
 public:
  /// Gives the registry and whatever else of the machine we hold over to Wine.
  using HandOver = std::function<Status()>;
  /// Whether Wine's server has taken the registry over.
  using TookOver = std::function<bool()>;

  /// Looks for "wine", then "wine64" in `path_list`, then for the file `usual_loader`. `machine` is
  /// the host folder of the machine. `hand_over` is called before each start; when it fails,
  /// nothing is started. `took_over` is asked after each start. Both may be empty.
  Wine(std::string_view path_list, const std::filesystem::path& machine, HandOver hand_over,
       const std::filesystem::path& usual_loader = kWineLoaderOfDebian, TookOver took_over = {});

  bool installed() const { return loader_.has_value(); }
  /// The host folder of the machine, absolute.
  const std::filesystem::path& machine() const { return machine_; }

  /// Hands the machine over and starts Wine in `folder` with these arguments: the program, by its
  /// host path or by the name of a program of Wine's own, and its arguments. Wine makes one command
  /// line of them, quoted so that the program splits it into the same arguments. Returns the
  /// process id as soon as the server has taken over: until then nobody could tell that the
  /// registry is out of our hands. Without Wine kFileNotFound.
  Result<std::uint32_t> Start(std::vector<std::string> arguments,
                              const std::filesystem::path& folder) const;

  /// As Start, for a program that is waited for. Wine's own complaints are off: what stands in the
  /// standard error is the program's, but for a line of Wine's when it has to set the machine up
  /// first. Of the exit code the lowest eight bits arrive.
  Result<std::unique_ptr<RunningProgram>> StartWaited(std::vector<std::string> arguments,
                                                      const std::filesystem::path& folder) const;

 private:
  /// Hands the machine over; the command that starts the loader.
  Result<HostCommand> Prepare(std::vector<std::string> arguments,
                              const std::filesystem::path& folder) const;

  std::optional<std::filesystem::path> loader_;
  std::filesystem::path machine_;
  HandOver hand_over_;
  TookOver took_over_;
};

}  // namespace zent
