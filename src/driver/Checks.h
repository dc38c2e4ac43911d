#pragma once

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

/// The commands that look whether the machine is ready for the update, and those that get programs
/// out of its way. A check that is not met says why and sets ErrorOccurred, so that the list ends.
namespace zent {

/// cte: the browser that the application's editor comes with is installed.
Status CheckBrowser(UpdateRun& run, const TokenList& tokens);

/// cdp: the application's data folder is there and can be read.
Status CheckDataFolder(UpdateRun& run, const TokenList& tokens);

/// ep,TITLE[,SECONDS]: asks the window of that title to close and waits, at most ten seconds or as
/// long as the line says, until it is gone. Nothing is shown when it does not close.
Status CloseProgram(UpdateRun& run, const TokenList& tokens);

/// CloseOutlookMessageIfRunning: asks the user to close the mail program and gives six seconds for
/// it. Whether it runs is not looked at.
Status AskToCloseMailProgram(UpdateRun& run, const TokenList& tokens);

/// CheckMinVersion,FILE,FOLDER,VERSION: the installed file is not older than VERSION. For the
/// application at version "3.06.0000" the user may install the service pack meanwhile: the run
/// waits for the Continue button, without a time limit, and looks again.
Status CheckMinVersion(UpdateRun& run, const TokenList& tokens);

}  // namespace zent
