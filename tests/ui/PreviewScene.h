#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "ui/UpdateWindow.h"

namespace zent::testing {

inline constexpr std::string_view kPreviewLines[] = {
    R"(Korvo path: C:\Program Files\Korvo\)",
    "Fetched Reg Key - ProgramFilesDir",
    "Fetched Reg Key - CommonFilesDir",
    R"(Fetched Data Folder - C:\Program Files\Korvo\ZentData\)",
    "Please wait.  Closing Korvo",
    R"(Copying Korvo.exe to C:\Program Files\Korvo\Korvo.exe)",
    R"(Copying KorvoMail.dll to C:\Program Files\Common Files\Zentware\Shared\Add-ins\KorvoMail.dll)",
    R"(Creating Folder C:\Program Files\Korvo\ZentHelp\Pictures)",
    "Running regsvr32.exe (RetVal=42)",
    "Synchronising Korvo.mdb",
    "Stra\u00dfe, na\u00efve, \u03b1\u03b2\u03b3",
};

/// Shows the scene of its name in the window: the window at work, waiting or ended, or a box of it.
class PreviewScene : public WindowEvents {
 public:
  PreviewScene(UpdateWindow& window, std::string name) : window_(window), name_(std::move(name)) {}

  void Form_Load() override {
    window_.SetTitle("Korvo Update 3.7 - Service Pack");
    for (const std::string_view line : kPreviewLines) Say(line);
    window_.ShowProgress(12, 48);
    if (const auto scene = Scenes().find(name_); scene != Scenes().end()) scene->second(window_);
    if (name_ == "waiting") WaitForContinue();
    if (name_ == "failed") Fail();
    if (name_ == "running" || name_ == "closing") Wait();
    if (name_ == "done") {
      window_.ShowProgress(48, 48);
      for (const char* line : {"", "Setup successfully completed.", "Click on 'Close' to exit."}) {
        Say(line);
      }
    }
  }
  void cmdClose_Click() override { window_.Close(); }
  void cmdContinue_Click() override {}
  void cmdInstall360_Click() override {}

 private:
  using Show = std::function<void(UpdateWindow&)>;
  static const std::map<std::string, Show>& Scenes() {
    static const std::map<std::string, Show> scenes = {
        {"retry",
         [](UpdateWindow& window) {
           window.Ask({.title = "Korvo Update 3.7 - Service Pack",
                       .text = "Error copying C:\\Program Files\\Korvo\\KorvoMail.dll\r\n"
                               "Description: Permission denied\r\nNumber: 70\r\n\r\n"
                               "Please close Outlook and Retry.",
                       .buttons = BoxButtons::RetryCancel,
                       .icon = BoxIcon::Critical});
         }},
        {"restart",
         [](UpdateWindow& window) {
           window.Ask({.title = "Korvo Update 3.7 - Service Pack",
                       .text = "To complete the installation, please reboot the computer.\r\n\r\n"
                               "Do you want reboot now?\r\n(Click Yes to reboot now, Click No to "
                               "reboot later.)",
                       .buttons = BoxButtons::YesNo,
                       .icon = BoxIcon::Question,
                       .topmost = true});
         }},
        {"outlook",
         [](UpdateWindow& window) {
           window.Ask({.title = "Korvo Update 3.7 - Service Pack",
                       .text = "Please close MS Outlook, if it is running.",
                       .topmost = true});
         }},
        {"long",
         [](UpdateWindow& window) {
           std::string text = "Error opening database (DSN=Korvo;***********UID=sa) \r\n";
           for (int i = 0; i < 60; ++i) {
             text += std::to_string(3146 + i) + " - ODBC--call failed. - DAO.Workspace\r\n";
           }
           window.Ask({.title = "Korvo Update", .text = text, .icon = BoxIcon::Critical});
         }},
        {"password",
         [](UpdateWindow& window) {
           window.AskText({.title = "Enter Password",
                           .prompt = "Please Enter Database Password.\r\n"
                                     "Password is Case Sensitive.",
                           .hidden = true});
         }},
        {"username",
         [](UpdateWindow& window) {
           window.AskText({.title = "Enter Username",
                           .prompt = "Please Enter Database Username.\r\n"
                                     "Username is Case Sensitive."});
         }},
    };
    return scenes;
  }

  void Say(std::string_view line) { window_.AppendMessage("  " + std::string(line) + "\r\n", 0); }
  void Wait() {
    while (!window_.CloseRequested()) window_.ProcessEvents(std::chrono::milliseconds(100));
  }
  void WaitForContinue() {
    Say("This update needs Korvo.exe version 3.06.0000 or higher.");
    for (const char* line :
         {"Please follow these instructions.",
          " 1) Click on the 'Install 3.6.0' button (below), and then click on RUN.",
          " 2) At the end of Step 1, if a 'reboot' is needed, please ignore it.",
          " 3) Please click on the 'Continue' button (below).",
          " 4) If 'reboot' was needed in Step 1, please reboot the computer now."}) {
      Say(line);
    }
    window_.EnableButton(WindowButton::Install360, true);
    window_.EnableButton(WindowButton::Continue, true);
    Wait();
  }
  void Fail() {
    for (const char* line : {"Error creating folder C:\\Program Files\\Korvo\\ZentHelp",
                             "Description: Path/File access error", "Number: 75", "",
                             "Setup failed.", "Click on 'Close' to exit."}) {
      Say(line);
    }
  }

  UpdateWindow& window_;
  std::string name_;
};

}  // namespace zent::testing
