#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zent::testing {

struct JetdbEnd {
  int exit_code = -1;
  std::string output;  ///< of both outputs
};

/// Runs the built jetdb in a folder. Arguments are without quotes.
JetdbEnd RunBuiltJetdb(const std::vector<std::string>& arguments,
                       const std::filesystem::path& folder);

}  // namespace zent::testing
