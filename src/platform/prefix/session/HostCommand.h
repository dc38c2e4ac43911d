#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zent {

/// A program of the host and how it is started.
struct HostCommand {
  std::filesystem::path program;         ///< absolute; never searched for
  std::vector<std::string> arguments;    ///< without the program; given as they are, by no shell
  std::filesystem::path folder;          ///< its working folder
  std::vector<std::string> environment;  ///< "NAME=value", put over our own environment
};

}  // namespace zent
