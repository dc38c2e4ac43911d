#include "driver/frmZentUpdate.h"

#include <fmt/format.h>

#include <exception>
#include <utility>

#include "base/Text.h"
#include "driver/SetupList.h"
#include "driver/run/Messages.h"
#include "driver/run/PathMacros.h"
#include "driver/run/Product.h"
#include "lib/AppSettings.h"
#include "lib/FuncLib.h"
#include "lib/RegFuncs.h"

namespace zent {
namespace {

constexpr std::string_view kCaption = "ZentUpdate";
constexpr std::string_view kSettingsSection = "General";
constexpr std::string_view kServicePackPath = "/download/KorvoSP 3.6.0.exe";
constexpr std::string_view kRestartSentence =
    "To complete the installation, please reboot the computer.";

}  // namespace

frmZentUpdate::frmZentUpdate(const Platform& platform, UpdateWindow& window, RunObserver& observer,
                             RunOptions options, std::string start_folder)
    : run_(platform, window, observer, options),
      observer_(observer),
      start_folder_(std::move(start_folder)) {}

void frmZentUpdate::Form_Load() {
  try {
    RunUpdate();
  } catch (const std::exception& defect) {
    run_.Report("Error during setup",
                {.number = kInvalidProcedureCall, .description = defect.what()});
    EndFailed();
  }
  observer_.OnEnd(result_, run_.state.RebootComputer);
}

void frmZentUpdate::RunUpdate() {
  RunState& state = run_.state;
  run_.SetTitle(
      fmt::format("{} {}.{}.{}", kCaption, kVersionMajor, kVersionMinor, kVersionRevision));
  run_.window.ProcessEvents(std::chrono::milliseconds(0));
  state.ErrorOccurred = false;
  state.RebootComputer = false;
  // Asked twice, as the application itself does.
  state.IsVista = GetOSVersionText(run_.platform.system) == "NT 6.0" ||
                  GetOSVersionText(run_.platform.system) == "NT 6.0";
  state.CurrDir = AddBackslash(start_folder_);
  state.SetupLstFileName = state.CurrDir + "ZentUpdate.ini";

  ReadSettings();
  if (!LocateApplication()) {
    result_ = RunResult::NotInstalled;
    return;
  }
  GetProgramFilesDir();
  if (!state.ErrorOccurred) GetCommonFilesDir();
  if (!state.ErrorOccurred) {
    LocateFolders();
    LocateData();
    RunSetupList(run_);
  }
  state.ErrorOccurred ? EndFailed() : EndSuccessful();
}

void frmZentUpdate::ReadSettings() {
  const auto read = [this](std::string_view key) {
    return ReadIniValue(run_.platform, run_.state.SetupLstFileName, kSettingsSection, key, "");
  };
  run_.state.AppName = read("AppName");
  const std::string caption = read("Caption");
  run_.state.PatchFileName = read("PatchFileName");
  const std::string auto_close = ToLower(TrimBlanks(read("AutoClose")));

  run_.tags.cmdClose = auto_close.empty() ? "no" : auto_close;
  if (!caption.empty()) run_.SetTitle(caption);
}

bool frmZentUpdate::LocateApplication() {
  RunState& state = run_.state;
  state.AppExe = state.AppName + ".exe";
  state.AppPath = AddBackslash(GetAppPath(run_.platform, state.AppExe));
  if (!state.AppPath.empty()) {
    ShowMsg("Korvo path: " + state.AppPath);
    return true;
  }
  ShowMsg("Could not get the installation path of Korvo. ");
  ShowMsg("Most likely cause of the above error is: ");
  ShowMsg("You are trying to install a patch, before doing a full installation.  ");
  return false;
}

bool frmZentUpdate::GetProgramFilesDir() {
  return FetchMachineFolder(kCurrentVersionKey, "ProgramFilesDir", "Program Files Dir",
                            run_.state.ProgramFilesDir);
}

bool frmZentUpdate::GetCommonFilesDir() {
  return FetchMachineFolder(kCurrentVersionKey, "CommonFilesDir", "Common Files Dir",
                            run_.state.CommonFilesDir);
}

bool frmZentUpdate::GetCommonAppDataDir() {
  const std::string key = std::string(kCurrentVersionKey) + R"(\Explorer\User Shell Folders)";
  return FetchMachineFolder(key, "Common AppData", "Common AppData Dir",
                            run_.state.CommonAppDataDir);
}

bool frmZentUpdate::FetchMachineFolder(std::string_view subkey, std::string_view value,
                                       std::string_view what, std::string& folder) {
  KeyHandle key = KeyHandle::None;
  std::string missing = fmt::format("Could not locate the '{}' key in the Registry.", what);
  if (OpenRegKey(run_.platform.registry, KeyHandle::LocalMachine, subkey, key)) {
    std::string text;
    const bool found = GetRegValue(run_.platform, key, value, text);
    CloseRegKey(run_.platform.registry, key);
    if (found) {
      folder = AddBackslash(text);
      ShowMsg("Fetched Reg Key - " + text);
      return true;
    }
    missing = fmt::format("Could not locate the '{}' key value in the Registry.", what);
  }
  ShowMsg(missing);
  run_.state.ErrorOccurred = true;
  return false;
}

void frmZentUpdate::LocateFolders() {
  RunState& state = run_.state;
  state.WinAppDataDir = GetAppDataFolder(run_.platform);
  state.HelpPath = state.AppPath + R"(ZentHelp\)";
  state.ZentAppDataPath = GetKorvoSharedFolder(run_.platform);
  state.IniFileName = state.ZentAppDataPath + state.AppName + ".ini";
}

void frmZentUpdate::LocateData() {
  RunState& state = run_.state;
  state.DataPath = state.AppPath + R"(ZentData\)";
  state.KorvoDataBaseName = state.DataPath + "Korvo.mdb";
  // The settings file of an application that was never started may be another user's.
  if (!HasNeverRun(run_.platform, state.AppName)) {
    const auto read = [&](std::string_view key) {
      return ReadIniValue(run_.platform, state.IniFileName, kSettingsSection, key, "");
    };
    const std::string data_path = AddBackslash(read("DataPath"));
    if (!data_path.empty()) state.DataPath = data_path;
    std::string database = read("DataBase");
    if (database.empty()) database = "Korvo.mdb";
    const bool is_source = database.substr(0, 4) == "DSN=";
    state.KorvoDataBaseName = is_source ? database : state.DataPath + database;
  }
  ShowMsg("Fetched Data Folder - " + state.DataPath);
}

void frmZentUpdate::EndFailed() {
  result_ = run_.Refused() ? RunResult::Refused : RunResult::Failed;
  ShowMsg("");
  ShowMsg("Setup failed.");
  ShowMsg("Click on 'Close' to exit.");
  if (run_.tags.cmdClose == "yes") cmdClose_Click();
}

void frmZentUpdate::EndSuccessful() {
  result_ = RunResult::Success;
  ShowMsg("");
  if (run_.state.RebootComputer) {
    OfferRestart();
  } else {
    ShowMsg("Setup successfully completed.");
    ShowMsg("Click on 'Close' to exit.");
  }
  if (run_.tags.cmdClose == "noerrors" || run_.tags.cmdClose == "yes") cmdClose_Click();
}

void frmZentUpdate::OfferRestart() {
  ShowMsg(kRestartSentence);
  if (run_.state.CopyExeFailed) {
    run_.Ask({.title = {}, .text = std::string(kRestartSentence)});
    return;
  }
  const Answer answer =
      run_.Ask({.title = {},
                .text = fmt::format("{0}{1}{1}Do you want reboot now?{1}(Click Yes to reboot now, "
                                    "Click No to reboot later.)",
                                    kRestartSentence, kLineBreak),
                .buttons = BoxButtons::YesNo,
                .icon = BoxIcon::Question,
                .topmost = true});
  if (answer != Answer::Yes) return;
  const Status restarted = ShutdownWindows(run_.platform, {.restart = true});
  if (!restarted.ok()) run_.ShowError("Error restarting the computer", restarted.error());
}

void frmZentUpdate::cmdClose_Click() { run_.window.Close(); }

void frmZentUpdate::cmdContinue_Click() {
  run_.tags.cmdContinue.clear();
  run_.window.EnableButton(WindowButton::Continue, false);
  run_.window.EnableButton(WindowButton::Install360, false);
}

void frmZentUpdate::cmdInstall360_Click() {
  const std::string address = fmt::format("http://{}{}", kDownloadHost, kServicePackPath);
  const Status opened =
      run_.platform.shell.OpenAddress(ReplaceAllIgnoringCase(address, " ", "%20"));
  if (!opened.ok()) run_.ShowError("Error opening " + address, opened.error());
}

void frmZentUpdate::ExpandDestFile(std::string& dest_file, std::string_view destination) const {
  zent::ExpandDestFile(run_, dest_file, destination);
}

}  // namespace zent
