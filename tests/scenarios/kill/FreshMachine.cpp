#include "scenarios/kill/FreshMachine.h"

#include <algorithm>

namespace zent::testing {
namespace {

bool IsFolder(const std::string& name) { return name.back() == '/'; }

bool IsSibling(const std::string& name) {
  const std::string last = std::filesystem::path(name).filename().string();
  return last.rfind(".zent-", 0) == 0;
}

}  // namespace

FreshMachine::FreshMachine(const std::vector<std::string>& lines) {
  std::filesystem::copy(ZENT_SAMPLE_MACHINE, folder() / "machine",
                        std::filesystem::copy_options::recursive);
  std::string list = "[General]\r\nAppName=Korvo\r\n[setup]\r\n";
  for (const std::string& line : lines) list += line + "\r\n";
  Put("package/ZentUpdate.ini", list);
}

void FreshMachine::Put(const std::string& name, std::string_view contents) const {
  folder_.Put(name, contents);
}

std::vector<std::string> FreshMachine::Command() const {
  return {ZENT_PROGRAM, (folder() / "package").string(),
          "--machine",  (folder() / "machine").string(),
          "--console",  "--unattended"};
}

ProgramEnd FreshMachine::Run() const { return RunHostProgram(Command(), folder().string()); }

std::vector<std::string> SiblingsIn(const MachineTree& tree) {
  std::vector<std::string> names;
  for (const auto& [name, contents] : tree) {
    if (IsSibling(name)) names.push_back(name);
  }
  return names;
}

MachineTree FilesOf(const MachineTree& tree) {
  MachineTree files;
  for (const auto& [name, contents] : tree) {
    if (!IsFolder(name) && !IsSibling(name)) files[name] = contents;
  }
  return files;
}

bool FoldersAreIn(const MachineTree& tree, const MachineTree& other) {
  return std::all_of(tree.begin(), tree.end(), [&](const auto& entry) {
    return !IsFolder(entry.first) || other.count(entry.first) != 0;
  });
}

}  // namespace zent::testing
