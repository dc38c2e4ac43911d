#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/Processes.h"
#include "platform/prefix/session/HostCommand.h"
#include "platform/prefix/session/ProgramLocator.h"
#include "platform/prefix/session/Wine.h"

namespace zent {

/// Programs of a machine that is kept in a folder of the host.
///
/// A Windows program runs through Wine, where Wine is installed; a program or script of the host
/// that lies in the machine runs as it is, with its arguments split as a Windows program would.
/// Anything else, a Windows program without Wine included, is kFileNotFound: there is nothing of
/// that name that could run here. The task identifier is the process id. Neither way of starting
/// has a field for the minimised state, so a program opens its window as it likes.
///
/// A Windows program that reads its command line uncut sees it quoted anew: PROP="a b" arrives as
/// "PROP=a b", because Wine is given arguments and no line.
///
/// A program of the host that is waited for finds the machine's host folder in WINEPREFIX: the
/// paths in its arguments are the machine's.
class PrefixProcesses : public Processes {
 public:
  PrefixProcesses(ProgramLocator& programs, const Wine& wine) : programs_(programs), wine_(wine) {}

  Result<std::uint32_t> Start(const Launch& launch) override;
  Result<std::unique_ptr<RunningProgram>> StartWaited(const Launch& launch) override;

 private:
  /// A start that only needs to be made.
  struct Prepared {
    HostCommand command;
    bool is_windows = false;  ///< Wine starts the arguments
  };

  Result<Prepared> Prepare(const Launch& launch);
  Result<std::filesystem::path> Find(const std::string& program);

  ProgramLocator& programs_;
  const Wine& wine_;
};

}  // namespace zent
