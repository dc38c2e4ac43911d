#include "driver/Checks.h"

#include <fmt/format.h>

#include <array>
#include <string>
#include <string_view>

#include "base/Text.h"
#include "driver/run/PathMacros.h"
#include "driver/run/Product.h"
#include "lib/FuncLib.h"
#include "lib/RegFuncs.h"
#include "lib/modGetFileVersion.h"

namespace zent {
namespace {

constexpr std::string_view kEditorFolder = R"($(CommonFiles)\Microsoft Shared\Triedit)";
constexpr double kCloseSeconds = 10;
constexpr int kMailProgramSeconds = 6;
constexpr std::string_view kPleaseWait = "Please wait...";
constexpr std::string_view kServicePackVersion = "3.06.0000";

constexpr std::array<std::string_view, 5> kServicePackSteps = {
    "Please follow these instructions.",
    " 1) Click on the 'Install 3.6.0' button (below), and then click on RUN.",
    " 2) At the end of Step 1, if a 'reboot' is needed, please ignore it.",
    " 3) Please click on the 'Continue' button (below).",
    " 4) If 'reboot' was needed in Step 1, please reboot the computer now.",
};

/// Ends the list: the machine is not ready. The user has been told.
void FailCheck(UpdateRun& run, std::string_view reason) {
  run.state.ErrorOccurred = true;
  run.Fail(reason);
}

bool CanReadFolder(FileSystem& files, const std::string& folder) {
  return FolderExists(files, folder) && files.Find(AddBackslash(folder) + "*").ok();
}

/// What CheckMinVersion is about.
struct MinVersion {
  std::string name;      ///< of the file, without its folder
  std::string path;      ///< full
  std::string required;  ///< version
};

/// Token 3 may be the folder of the file or its whole path.
std::string InstalledFile(UpdateRun& run, const std::string& name, const std::string& place) {
  std::string path = ExpandDestination(run, name, place);
  if (FolderExists(run.platform.files, path)) path = AddBackslash(path) + name;
  return path;
}

Result<MinVersion> MinVersionOf(UpdateRun& run, const TokenList& tokens) {
  std::array<std::string, 3> arguments;  // file, folder, version
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const Result<std::string> token = tokens.At(i + 2);
    if (!token.ok()) return token.error();
    arguments.at(i) = token.value();
  }
  const auto& [file, folder, required] = arguments;
  return MinVersion{
      .name = GetFileName(file), .path = InstalledFile(run, file, folder), .required = required};
}

/// Reads the installed version; true when it is too low.
bool IsTooOld(const UpdateRun& run, const MinVersion& check, std::string& installed) {
  installed = GetFileVersionText(run.platform.versions, check.path);
  return IsVersionOlder(installed, check.required);
}

/// Says what the update needs.
void ShowNeed(UpdateRun& run, const MinVersion& check) {
  run.ShowMsg(
      fmt::format("This update needs {} version {} or higher.", check.name, check.required));
}

bool IsServicePackCase(const MinVersion& check) {
  return ToLower(check.name) == "korvo.exe" && check.required == kServicePackVersion;
}

/// Suspends the run until the user clicks Continue, or closes the window.
void WaitForServicePack(UpdateRun& run) {
  run.ShowMsg(kLineBreak);
  for (const std::string_view step : kServicePackSteps) run.ShowMsg(step);
  run.ShowMsg(kLineBreak);

  run.tags.cmdContinue = "Wait";
  run.window.EnableButton(WindowButton::Install360, true);
  run.window.EnableButton(WindowButton::Continue, true);
  while (!run.tags.cmdContinue.empty() && !run.window.CloseRequested()) run.Pause(1);
  // A window that is being closed has not done what the button does.
  run.tags.cmdContinue.clear();
  run.window.EnableButton(WindowButton::Continue, false);
  run.window.EnableButton(WindowButton::Install360, false);
}

}  // namespace

Status CheckBrowser(UpdateRun& run, [[maybe_unused]] const TokenList& tokens) {
  if (FolderExists(run.platform.files, ExpandPath(run, kEditorFolder))) return {};
  run.ShowMsg(fmt::format(
      "Setup cannot continue because, you do not have proper version of Internet Explorer.{0}"
      "One of the following version is required.{0}"
      "Internet Explorer 5.01 (Service Pack 2) or {0}"
      "Internet Explorer 5.5 (Service Pack 2) or {0}"
      "Internet Explorer 6.0{0}"
      "{0}"
      "Internet Explorer can be downloaded from {1}{0}"
      "Please contact {2} if you need help.",
      kLineBreak, kBrowserDownload, kSupportContact));
  FailCheck(run, "the browser is missing or too old");
  return {};
}

Status CheckDataFolder(UpdateRun& run, [[maybe_unused]] const TokenList& tokens) {
  const std::string& folder = run.state.DataPath;
  if (CanReadFolder(run.platform.files, folder)) return {};
  run.ShowMsg(
      fmt::format("{0} Setup cannot continue because, the Korvo Data Path is not accessible.{0}"
                  " Using Windows Explorer, Navigate to '{1}' and try again. ",
                  kLineBreak, folder));
  FailCheck(run, "the data folder is not accessible: " + folder);
  return {};
}

Status CloseProgram(UpdateRun& run, const TokenList& tokens) {
  const Result<std::string> title = tokens.At(2);
  if (!title.ok()) {
    run.ShowError("Error closing ", title.error());
    FailCheck(run, title.error().description);
    return {};
  }
  const Result<std::string> limit = tokens.At(3);
  const double seconds = limit.ok() ? LeadingNumber(limit.value()) : kCloseSeconds;

  run.ShowMsg("Please wait.  Closing " + title.value());
  Shell& shell = run.platform.shell;
  const bool is_open =
      !title.value().empty() && shell.FindWindowByTitle(title.value()) != WindowHandle::None;
  const bool is_gone =
      CloseWindowByTitle(shell, run.platform.clock, run.window, title.value(), seconds);
  if (!is_gone) {
    run.Warn("the window is still open: " + title.value());
  } else if (!is_open) {
    run.Skip("no window of this title: " + title.value());
  }
  return {};
}

Status AskToCloseMailProgram(UpdateRun& run, [[maybe_unused]] const TokenList& tokens) {
  run.Ask({.title = {},
           .text = "Please close MS Outlook, if it is running.",
           .buttons = BoxButtons::Ok,
           .icon = BoxIcon::Information,
           .topmost = true});
  run.ShowMsg(kPleaseWait);
  for (int second = 0; second < kMailProgramSeconds; ++second) {
    run.Pause(1);
    run.RepeatProgress(kPleaseWait);
  }
  run.ShowMsg(" ");
  return {};
}

Status CheckMinVersion(UpdateRun& run, const TokenList& tokens) {
  const Result<MinVersion> arguments = MinVersionOf(run, tokens);
  if (!arguments.ok()) return arguments.error();
  const MinVersion& check = arguments.value();

  std::string installed;
  bool is_too_old = IsTooOld(run, check, installed);
  run.ShowMsg(fmt::format("{}: installed version {}, needed {}", check.name,
                          installed.empty() ? "none" : installed, check.required));
  if (!is_too_old) return {};

  ShowNeed(run, check);
  if (IsServicePackCase(check)) {
    WaitForServicePack(run);
    is_too_old = IsTooOld(run, check, installed);
    if (is_too_old) ShowNeed(run, check);
  }
  if (is_too_old) FailCheck(run, fmt::format("{} is older than {}", check.path, check.required));
  return {};
}

}  // namespace zent
