#pragma once

#include <filesystem>

#include "scenarios/Scenario.h"

namespace zent::testing {

/// The exit code that the native program has for the same end as `low_bits`, which are what the
/// host sees of a Windows exit code; 1000 and more for an end that no run has.
int NativeExitCodeOf(int low_bits);

/// As RunScenario, by the program for Windows under Wine. Registry files in `machine` are the list
/// of their changes, other files are in the form of Comparable.
ScenarioEnd RunUnderWine(const Scenario& scenario, const std::filesystem::path& workplace);

/// What a scenario's expected files say about a new or changed file, in the same form.
std::string ExpectedFile(const Scenario& scenario, const std::filesystem::path& machine,
                         const std::string& name);

}  // namespace zent::testing
