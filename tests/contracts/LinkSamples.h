#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zent::testing {

/// A link that the system wrote, and what it read back from it.
struct LinkSample {
  std::string name;
  bool folder = false;  ///< the target is one
  std::string target;
  std::string working_folder = {};
  std::string arguments = {};
  std::string description = {};
  std::string bytes = {};
};

/// The samples of a file in tests/data/links, whose head describes the form.
std::vector<LinkSample> LoadLinkSamples(const std::filesystem::path& path);

}  // namespace zent::testing
