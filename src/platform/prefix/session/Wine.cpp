#include "platform/prefix/session/Wine.h"

#include <utility>

#include "platform/prefix/session/DetachedStart.h"
#include "platform/prefix/session/HostPrograms.h"

namespace zent {
namespace {

std::optional<std::filesystem::path> FindLoader(std::string_view path_list,
                                                const std::filesystem::path& usual_loader) {
  for (const char* name : {"wine", "wine64"}) {
    if (auto found = FindHostProgram(name, path_list)) return found;
  }
  return FindHostProgram(usual_loader.filename().string(), usual_loader.parent_path().string());
}

}  // namespace

Wine::Wine(std::string_view path_list, const std::filesystem::path& machine, HandOver hand_over,
           const std::filesystem::path& usual_loader)
    : loader_(FindLoader(path_list, usual_loader)),
      machine_(std::filesystem::absolute(machine)),
      hand_over_(std::move(hand_over)) {}

Result<std::uint32_t> Wine::Start(std::vector<std::string> arguments,
                                  const std::filesystem::path& folder) const {
  if (!loader_) return StandardError(kFileNotFound);
  if (hand_over_) {
    const Status handed = hand_over_();
    if (!handed.ok()) return handed.error();
  }
  return StartDetached({.program = *loader_,
                        .arguments = std::move(arguments),
                        .folder = folder,
                        .environment = {"WINEPREFIX=" + machine_.string()}});
}

}  // namespace zent
