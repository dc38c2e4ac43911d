#include "platform/prefix/session/PrefixProcesses.h"

#include <utility>
#include <vector>

#include "platform/prefix/session/CommandLine.h"
#include "platform/prefix/session/DetachedStart.h"
#include "platform/prefix/session/HostPrograms.h"

namespace zent {

Result<std::uint32_t> PrefixProcesses::Start(const Launch& launch) {
  const Result<std::filesystem::path> found = Find(launch.program);
  if (!found.ok()) return found.error();
  const std::filesystem::path program = std::filesystem::absolute(found.value());
  std::vector<std::string> arguments = SplitArguments(launch.arguments);

  switch (ProgramKindOf(program)) {
    case ProgramKind::Host:
      return StartDetached({.program = program,
                            .arguments = std::move(arguments),
                            .folder = program.parent_path(),
                            .environment = {}});
    case ProgramKind::Windows:
      // By its host path, which Wine takes for every drive, also one that only we know.
      arguments.insert(arguments.begin(), program.string());
      return wine_.Start(std::move(arguments), program.parent_path());
    case ProgramKind::None:
      break;
  }
  return StandardError(kFileNotFound);
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
