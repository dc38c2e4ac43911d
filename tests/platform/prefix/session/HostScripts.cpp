#include "platform/prefix/session/HostScripts.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

namespace zent::testing {

std::filesystem::path PutScript(const TempFolder& folder, const std::filesystem::path& name,
                                std::string_view commands) {
  std::filesystem::path path = folder.Put(name, fmt::format("#!/bin/sh\n{}\n", commands));
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  return path;
}

std::filesystem::path PutRecorder(const TempFolder& folder, const std::filesystem::path& name,
                                  const std::string& record) {
  constexpr const char* kCommands =
      "{{ printf 'WINEPREFIX=%s\\nMARK=%s\\npwd=%s\\n' \"$WINEPREFIX\" \"$MARK\" \"$PWD\"\n"
      "  for argument in \"$@\"; do printf '<%s>\\n' \"$argument\"; done\n"
      "}} >'{0}.new'\n"
      "mv '{0}.new' '{0}'";
  return PutScript(folder, name, fmt::format(kCommands, (folder.path() / record).string()));
}

std::string WaitForFile(const std::filesystem::path& path) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!std::filesystem::exists(path)) {
    if (std::chrono::steady_clock::now() > end) {
      ADD_FAILURE() << "no program has written " << path;
      return {};
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return ReadHostFile(path);
}

bool HasChildren() { return ::waitpid(-1, nullptr, WNOHANG) >= 0; }

}  // namespace zent::testing
