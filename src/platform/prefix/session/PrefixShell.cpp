#include "platform/prefix/session/PrefixShell.h"

#include <utility>
#include <vector>

#include "platform/WebAddress.h"
#include "platform/prefix/session/DetachedStart.h"
#include "platform/prefix/session/HostPrograms.h"

namespace zent {

PrefixShell::PrefixShell(std::string path_list, const Wine& wine, DesktopWindows* windows)
    : path_list_(std::move(path_list)), wine_(wine), windows_(windows) {}

Status PrefixShell::OpenAddress(std::string_view address) {
  if (!IsWebAddress(address)) return StandardError(kInvalidProcedureCall);
  const auto opener = FindHostProgram("xdg-open", path_list_);
  if (!opener) return StandardError(kDeviceUnavailable);
  return StartDetached({.program = *opener,
                        .arguments = {std::string(address)},
                        .folder = "/",
                        .environment = {}})
      .status();
}

WindowHandle PrefixShell::FindWindowByTitle(std::string_view title) {
  return windows_ != nullptr ? windows_->FindWindowByTitle(title) : WindowHandle::None;
}

Status PrefixShell::PostClose(WindowHandle window) {
  if (windows_ == nullptr) return StandardError(kDeviceUnavailable);
  return windows_->PostClose(window);
}

Status PrefixShell::EndSession(std::uint32_t action) {
  const std::uint32_t kind = action & ~kForce;
  if (kind != kShutDown && kind != kRestart && kind != kPowerOff) {
    return StandardError(kInvalidProcedureCall);
  }
  if (!wine_.installed()) return {};

  std::vector<std::string> arguments = {"wineboot", "--end-session"};
  if ((action & kForce) != 0) arguments.emplace_back("--force");
  arguments.emplace_back(kind == kRestart ? "--restart" : "--shutdown");
  // In the machine's own folder: Wine looks for a program in the current one first.
  return wine_.Start(std::move(arguments), wine_.machine()).status();
}

}  // namespace zent
