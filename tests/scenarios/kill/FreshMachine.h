#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "scenarios/HostProgram.h"
#include "scenarios/MachineTree.h"
#include "support/TempFolder.h"

namespace zent::testing {

/// A sample machine and a package of the given setup lines, both new, in a folder of their own.
class FreshMachine {
 public:
  explicit FreshMachine(const std::vector<std::string>& lines);

  /// A further file; names below "machine/" and "package/" are the machine's and the package's.
  void Put(const std::string& name, std::string_view contents) const;
  const std::filesystem::path& folder() const { return folder_.path(); }
  /// What starts the program over the package.
  std::vector<std::string> Command() const;
  ProgramEnd Run() const;
  /// Folders and files of the machine as they are now.
  MachineTree Tree() const { return ReadTree(folder() / "machine"); }

 private:
  TempFolder folder_;
};

/// The names of half-written files, ".zent-*.tmp", in any folder.
std::vector<std::string> SiblingsIn(const MachineTree& tree);

/// The files alone: neither folders nor half-written files.
MachineTree FilesOf(const MachineTree& tree);

/// Whether every folder of `tree` is one of `other`.
bool FoldersAreIn(const MachineTree& tree, const MachineTree& other);

}  // namespace zent::testing
