#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "scenarios/Scenario.h"

namespace zent::testing {

/// The lines of a file that are not empty; none where it is missing.
std::vector<std::string> LinesOf(const std::filesystem::path& file);

/// Makes the machine of a scenario of the sample machine: a folder as the native program services
/// it.
void BuildMachine(const Scenario& scenario, const std::filesystem::path& sample,
                  const std::filesystem::path& machine);

std::string WithoutCarriageReturns(std::string text);

/// An events file in the form of `expected.records`. `exit_code` is the one of this system.
std::string RecordsOf(const std::filesystem::path& events, int exit_code);

/// The names of the new and changed files of a change list.
std::vector<std::string> NamesOf(const std::string& changes);

}  // namespace zent::testing
