#pragma once

#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "app/CommandLine.h"
#include "app/ExitCode.h"
#include "base/Status.h"
#include "jet/storage/Storage.h"
#include "platform/Platform.h"
#include "ui/UpdateWindow.h"

namespace zent {

/// Why the program ends without a run.
struct Refusal {
  ExitCode code = ExitCode::Failed;
  std::string text;  ///< for the user, one line
};

/// What a system gives the program: its machine, its windows, and a place for words.
class ProgramHost {
 public:
  virtual ~ProgramHost() = default;

  /// What the command line is like here.
  virtual ProgramTexts Texts() = 0;
  /// Opens the machine that the line means, with its package folder, for the one run of it. A
  /// conversion has no package, and where it names no machine gets an empty one.
  virtual std::optional<Refusal> OpenMachine(const CommandLine& line) = 0;
  /// The machine's ports; only after OpenMachine.
  virtual const Platform& platform() = 0;
  /// The package folder's path on the machine; only after OpenMachine.
  virtual const std::string& package() = 0;
  /// The package folder as the user knows it; only after OpenMachine.
  virtual std::string ShownPackage() = 0;
  /// The Access files of the run: of the machine, or for a conversion of the host; only after
  /// OpenMachine.
  virtual jet::Storage& databases() = 0;
  /// The computer's name, shown to others who find a database in use.
  virtual std::string ComputerName() = 0;
  /// The window of the user's choice; null when it is not to be had. `scripted`: its questions are
  /// answered beforehand, so that nothing is read.
  virtual std::unique_ptr<UpdateWindow> MakeScreen(WindowChoice choice, bool scripted) = 0;

  /// All of standard input, in bytes. Error: kOutOfStringSpace above 16 MB.
  virtual Result<std::string> ReadInput() = 0;
  /// Shows what was asked for: help, the version, a statement.
  virtual void Show(const std::string& text) = 0;
  /// Shows what is wrong, one line or more without the last line's end.
  virtual void Complain(const std::string& text) = 0;
  /// Where answers that nobody sees given are told; may be null. Outlives the run.
  virtual std::ostream* Notes() = 0;
};

/// The whole program: reads the arguments, opens the machine, runs the package through a window.
ExitCode RunProgram(ProgramHost& host, int argc, const char* const* argv);

}  // namespace zent
