#include "fakes/run/RunBuilder.h"

#include <gtest/gtest.h>

namespace zent::testing {
namespace {

constexpr std::string_view kCurrentVersion = R"(SOFTWARE\Microsoft\Windows\CurrentVersion)";

}  // namespace

MemoryMachine::MemoryMachine()
    : settings(files, system), versions(files), links(files), platform{files,  registry,  settings,
                                                                       system, processes, shell,
                                                                       clock,  versions,  links} {
  files.PutFolder(R"(C:\windows\system32)");
  files.PutFolder(R"(D:\Package)");
  files.SetCurrentFolder(R"(D:\Package)");
}

void MemoryMachine::InstallKorvo() {
  const std::string current_version(kCurrentVersion);
  const KeyHandle machine_root = KeyHandle::LocalMachine;
  registry.PutText(machine_root, current_version + R"(\App Paths\Korvo.exe)", "",
                   R"(C:\Korvo\Korvo.exe)");
  registry.PutText(machine_root, current_version, "ProgramFilesDir", R"(C:\Program Files)");
  registry.PutText(machine_root, current_version, "CommonFilesDir",
                   R"(C:\Program Files\Common Files)");
  registry.PutText(machine_root, R"(SOFTWARE\Microsoft\Windows NT\CurrentVersion\ProfileList)",
                   "Public", R"(C:\users\Public)");
  const std::string shell_folders = current_version + R"(\Explorer\Shell Folders)";
  registry.PutText(KeyHandle::CurrentUser, shell_folders, "AppData", R"(C:\users\anna\AppData)");
  registry.PutText(KeyHandle::CurrentUser, shell_folders, "Desktop", R"(C:\users\anna\Desktop)");
  registry.PutText(KeyHandle::CurrentUser, shell_folders, "Personal", R"(C:\users\anna\Documents)");
  registry.PutText(KeyHandle::CurrentUser, R"(Software\VB and VBA Program Settings\Korvo\Settings)",
                   "LastRunDateTime", "11/19/2005 7:05:00 PM");
  files.PutFile(R"(C:\Korvo\Korvo.exe)", "program");
  files.PutFolder(R"(C:\users\Public\Zent)");
  files.PutFile(R"(C:\users\Public\Zent\KorvoPaths.ini)", "[General]\r\nIniPath=C:\\Ini\r\n");
  files.PutFile(R"(C:\Ini\Korvo.ini)", "[General]\r\nDataPath=D:\\Data\r\n");
}

RunBuilder::RunBuilder(RunOptions options) : run(machine.platform, window, observer, options) {
  RunState& state = run.state;
  state.AppName = "Korvo";
  state.AppExe = "Korvo.exe";
  state.AppPath = R"(C:\Korvo\)";
  state.HelpPath = R"(C:\Korvo\ZentHelp\)";
  state.ProgramFilesDir = R"(C:\Program Files\)";
  state.CommonFilesDir = R"(C:\Program Files\Common Files\)";
  state.WinAppDataDir = R"(C:\users\anna\AppData\)";
  state.DataPath = R"(D:\Data\)";
  state.ZentAppDataPath = R"(C:\users\Public\Zent\)";
  state.CurrDir = R"(D:\Package\)";
  state.SetupLstFileName = R"(D:\Package\ZentUpdate.ini)";
  for (const char* folder : {R"(C:\Korvo)", R"(D:\Data)", R"(C:\users\anna\Desktop)"}) {
    machine.files.PutFolder(folder);
  }
}

CommandRecord RunBuilder::Call(Status (*handler)(UpdateRun&, const TokenList&),
                               const TokenList& tokens) {
  run.BeginCommand({.line = 1, .keyword = tokens.At(1).value_or("")});
  const Status done = handler(run, tokens);
  if (!done.ok()) run.Report("Error handed back", done.error());
  run.EndCommand();
  EXPECT_FALSE(observer.records.empty());
  return observer.records.back();
}

}  // namespace zent::testing
