#include "platform/prefix/session/Wine.h"

#include <chrono>
#include <csignal>
#include <thread>
#include <utility>

#include "platform/prefix/session/DetachedStart.h"
#include "platform/prefix/session/HostPrograms.h"
#include "platform/prefix/session/WaitedStart.h"

namespace zent {
namespace {

std::optional<std::filesystem::path> FindLoader(std::string_view path_list,
                                                const std::filesystem::path& usual_loader) {
  for (const char* name : {"wine", "wine64"}) {
    if (auto found = FindHostProgram(name, path_list)) return found;
  }
  return FindHostProgram(usual_loader.filename().string(), usual_loader.parent_path().string());
}

// A loaded host takes a second to bring the server up.
constexpr std::chrono::seconds kLongestStart(10);
constexpr std::chrono::milliseconds kWineStep(5);

bool Lives(std::uint32_t process) { return ::kill(static_cast<pid_t>(process), 0) == 0; }

}  // namespace

Wine::Wine(std::string_view path_list, const std::filesystem::path& machine, HandOver hand_over,
           const std::filesystem::path& usual_loader, TookOver took_over)
    : loader_(FindLoader(path_list, usual_loader)),
      machine_(std::filesystem::absolute(machine)),
      hand_over_(std::move(hand_over)),
      took_over_(std::move(took_over)) {}

Result<std::uint32_t> Wine::Start(std::vector<std::string> arguments,
                                  const std::filesystem::path& folder) const {
  const Result<HostCommand> command = Prepare(std::move(arguments), folder);
  if (!command.ok()) return command.error();
  Result<std::uint32_t> started = StartDetached(command.value());
  if (!started.ok() || !took_over_) return started;
  const auto latest = std::chrono::steady_clock::now() + kLongestStart;
  while (!took_over_() && Lives(started.value()) && std::chrono::steady_clock::now() < latest) {
    std::this_thread::sleep_for(kWineStep);
  }
  return started;
}

Result<std::unique_ptr<RunningProgram>> Wine::StartWaited(
    std::vector<std::string> arguments, const std::filesystem::path& folder) const {
  Result<HostCommand> command = Prepare(std::move(arguments), folder);
  if (!command.ok()) return command.error();
  command.value().environment.emplace_back("WINEDEBUG=-all");
  Result<std::unique_ptr<RunningProgram>> started = zent::StartWaited(command.value());
  if (!started.ok() || !took_over_) return started;
  const auto latest = std::chrono::steady_clock::now() + kLongestStart;
  while (!took_over_() && std::chrono::steady_clock::now() < latest) {
    const auto ended = started.value()->Wait(kWineStep);
    if (!ended.ok() || ended.value()) break;
  }
  return started;
}

Result<HostCommand> Wine::Prepare(std::vector<std::string> arguments,
                                  const std::filesystem::path& folder) const {
  if (!loader_) return StandardError(kFileNotFound);
  if (hand_over_) {
    const Status handed = hand_over_();
    if (!handed.ok()) return handed.error();
  }
  return HostCommand{.program = *loader_,
                     .arguments = std::move(arguments),
                     .folder = folder,
                     .environment = {"WINEPREFIX=" + machine_.string()}};
}

}  // namespace zent
