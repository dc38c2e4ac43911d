#pragma once

#include <string>

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

/// Components and programs: each command hands its work to another program, which is started
/// minimised and not waited for, so what that program makes of it is never known.
///
/// The lines shown hold the command line as classic setup lists have it: a program's path with
/// blanks stands there without quotes, a name without a folder stays bare. What is started is
/// always the one full path that is meant, a relative one counted from the package folder: no
/// folder of the system or of PATH is searched for it.
///
/// `quiet` keeps a failure from being shown; ErrorOccurred is set all the same.
namespace zent {

/// Registers a component: "korvo.exe" and "zentsearch.exe" are started with " /RegServer", any
/// other program without arguments, a type library (.tlb) goes to regtlib.exe and everything else
/// to regsvr32.exe. The two tools are looked for in the system folder, then in the Windows folder.
Status RegisterComponent(UpdateRun& run, const std::string& file, bool& quiet);

/// Unregisters a component. Programs are not unregistered but started as RegisterComponent starts
/// them; all else, type libraries too, goes to regsvr32. The line shown at the end always names
/// that tool in the Windows folder, whatever was started.
Status UnregisterComponent(UpdateRun& run, const std::string& file, bool& quiet);

/// Starts a program with `arguments` as they are written: path macros in them are not expanded.
Status RunProgram(UpdateRun& run, const std::string& program, const std::string& arguments,
                  bool& quiet);

/// reg,FILE and ureg,FILE; run,PROGRAM,ARGUMENTS.
Status RegisterCommand(UpdateRun& run, const TokenList& tokens);
Status UnregisterCommand(UpdateRun& run, const TokenList& tokens);
Status RunCommand(UpdateRun& run, const TokenList& tokens);

}  // namespace zent
