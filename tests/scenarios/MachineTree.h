#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace zent::testing {

/// Every file below a folder by its relative path, with its bytes; folders end with "/" and links
/// hold "-> target". Times of registry files, which a write moves, are left out.
using MachineTree = std::map<std::string, std::string>;

MachineTree ReadTree(const std::filesystem::path& root);

/// The files that differ, one a line, "+" new, "-" gone, "~" changed; empty when all are equal.
std::string CompareTrees(const MachineTree& before, const MachineTree& after);

}  // namespace zent::testing
