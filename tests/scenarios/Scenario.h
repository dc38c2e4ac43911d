#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "scenarios/MachineTree.h"

namespace zent::testing {

/// A folder of tests/scenarios/cases:
///   package/          the update package
///   machine/          files laid over the sample machine before the run (left out: none)
///   remove            paths taken off the sample machine before the run, one a line
///   options           further options, one a line
///   answers           the answers to the run's questions (left out: the safe ones)
///   expected.log      the message box, to the letter, with LF as line end
///   expected.records  one line a command: line number, keyword, record, reason; then the result
///   expected.changes  what differs on the machine afterwards: + new, - gone, ~ changed
///   expected/         the bytes of new and changed files
struct Scenario {
  std::filesystem::path folder;
};

/// What a scenario left behind, in the form of its expected files.
struct ScenarioEnd {
  std::string log;
  std::string records;
  std::string changes;
  MachineTree machine;  ///< afterwards
  std::string output;   ///< of the program, for a failing test
};

std::vector<std::string> ListScenarios(const std::filesystem::path& folder);

/// Builds the machine in `workplace` and runs the program over it.
ScenarioEnd RunScenario(const Scenario& scenario, const std::filesystem::path& workplace);

}  // namespace zent::testing
