#include "scenarios/MachineTree.h"

#include <sstream>

#include "support/TempFolder.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;

/// The text of a registry file without the times of its keys.
std::string WithoutTimes(const std::string& text) {
  std::istringstream lines(text);
  std::string kept;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("#time=", 0) == 0) continue;
    const std::size_t bracket = line.rfind("] ");
    if (!line.empty() && line.front() == '[' && bracket != std::string::npos) {
      line.erase(bracket + 1);
    }
    kept += line + "\n";
  }
  return kept;
}

}  // namespace

MachineTree ReadTree(const fs::path& root) {
  MachineTree tree;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
    const std::string name = fs::relative(entry.path(), root).string();
    if (entry.is_symlink()) {
      tree[name] = "-> " + fs::read_symlink(entry.path()).string();
    } else if (entry.is_directory()) {
      tree[name + "/"] = "";
    } else {
      const std::string contents = ReadHostFile(entry.path());
      tree[name] = entry.path().extension() == ".reg" ? WithoutTimes(contents) : contents;
    }
  }
  return tree;
}

std::string CompareTrees(const MachineTree& before, const MachineTree& after) {
  std::string differences;
  for (const auto& [name, contents] : before) {
    const auto found = after.find(name);
    if (found == after.end()) {
      differences += "- " + name + "\n";
    } else if (found->second != contents) {
      differences += "~ " + name + "\n";
    }
  }
  for (const auto& [name, contents] : after) {
    if (before.count(name) == 0) differences += "+ " + name + "\n";
  }
  return differences;
}

}  // namespace zent::testing
