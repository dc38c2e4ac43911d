#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// The real files that a build was given the folder of.
namespace zent::jet::testing {

/// All .mdb files below that folder, in the order of their paths.
std::vector<std::filesystem::path> SamplePaths();

/// What another reader found in that file, as JSON: it lies in a folder beside the samples.
std::filesystem::path ExpectedDumpOf(const std::filesystem::path& sample);

/// The name of that file as the name of a test can have it: letters and digits.
std::string TestNameOf(const std::filesystem::path& sample);

}  // namespace zent::jet::testing
