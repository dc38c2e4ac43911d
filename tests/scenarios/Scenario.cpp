#include "scenarios/Scenario.h"

#include "scenarios/HostProgram.h"
#include "scenarios/ScenarioFiles.h"
#include "support/TempFolder.h"

namespace zent::testing {

namespace fs = std::filesystem;

ScenarioEnd RunScenario(const Scenario& scenario, const fs::path& workplace) {
  const fs::path machine = workplace / "machine";
  const fs::path package = workplace / "package";
  BuildMachine(scenario, ZENT_SAMPLE_MACHINE, machine);
  fs::copy(scenario.folder / "package", package, fs::copy_options::recursive);
  const MachineTree before = ReadTree(machine);

  std::vector<std::string> arguments = {ZENT_PROGRAM, package.string(),
                                        "--machine",  machine.string(),
                                        "--console",  "--unattended",
                                        "--log",      (workplace / "log").string(),
                                        "--events",   (workplace / "events").string()};
  if (fs::exists(scenario.folder / "answers")) {
    arguments.insert(arguments.end(), {"--answers", (scenario.folder / "answers").string()});
  }
  for (const std::string& option : LinesOf(scenario.folder / "options"))
    arguments.push_back(option);
  const ProgramEnd ended = RunHostProgram(arguments, workplace.string());

  ScenarioEnd end;
  end.output = ended.output;
  end.log = WithoutCarriageReturns(ReadHostFile(workplace / "log"));
  end.records = RecordsOf(workplace / "events", ended.exit_code);
  end.machine = ReadTree(machine);
  end.changes = CompareTrees(before, end.machine);
  return end;
}

}  // namespace zent::testing
