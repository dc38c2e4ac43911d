#include "platform/prefix/session/PrefixProcesses.h"

#include <utility>
#include <vector>

#include "platform/prefix/session/CommandLine.h"
#include "platform/prefix/session/DetachedStart.h"
#include "platform/prefix/session/HostPrograms.h"
#include "platform/prefix/session/WaitedStart.h"

namespace zent {

Result<std::uint32_t> PrefixProcesses::Start(const Launch& launch) {
  Result<Prepared> prepared = Prepare(launch);
  if (!prepared.ok()) return prepared.error();
  HostCommand& command = prepared.value().command;
  if (prepared.value().is_windows) return wine_.Start(std::move(command.arguments), command.folder);
  return StartDetached(command);
}

Result<std::unique_ptr<RunningProgram>> PrefixProcesses::StartWaited(const Launch& launch) {
  Result<Prepared> prepared = Prepare(launch);
  if (!prepared.ok()) return prepared.error();
  HostCommand& command = prepared.value().command;
  if (prepared.value().is_windows) {
    return wine_.StartWaited(std::move(command.arguments), command.folder);
  }
  command.environment.push_back("WINEPREFIX=" + wine_.machine().string());
  return zent::StartWaited(command);
}

Result<PrefixProcesses::Prepared> PrefixProcesses::Prepare(const Launch& launch) {
  const Result<std::filesystem::path> found = Find(launch.program);
  if (!found.ok()) return found.error();
  const std::filesystem::path program = std::filesystem::absolute(found.value());
  const ProgramKind kind = ProgramKindOf(program);
  if (kind == ProgramKind::None) return StandardError(kFileNotFound);

  Prepared prepared{.command = {.program = program,
                                .arguments = SplitArguments(launch.arguments),
                                .folder = program.parent_path(),
                                .environment = {}},
                    .is_windows = kind == ProgramKind::Windows};
  std::vector<std::string>& arguments = prepared.command.arguments;
  // By its host path, which Wine takes for every drive, also one that only we know.
  if (prepared.is_windows) arguments.insert(arguments.begin(), program.string());
  return prepared;
}

/// The host path of the program's file. A folder of the very name does not hide "NAME.exe".
Result<std::filesystem::path> PrefixProcesses::Find(const std::string& program) {
  if (program.empty() || program.back() == '\\' || program.back() == '/') {
    return StandardError(kFileNotFound);
  }
  Result<std::filesystem::path> exact = programs_.HostPath(program);
  if (exact.ok() && IsRegularFile(exact.value())) return exact;
  Result<std::filesystem::path> extended = programs_.HostPath(program + ".exe");
  if (extended.ok() && IsRegularFile(extended.value())) return extended;
  return exact.ok() ? StandardError(kFileNotFound) : exact.error();
}

}  // namespace zent
