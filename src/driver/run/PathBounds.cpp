#include "driver/run/PathBounds.h"

#include <algorithm>
#include <array>

#include "base/CaseFold.h"
#include "base/Text.h"
#include "driver/run/PathMacros.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

constexpr std::string_view kSeparators = "\\/";

/// True when the ".." of a relative path ever lead above where it starts. A text, not the disk, is
/// asked: above the root of a drive there is nothing, but a package need not lie at one.
bool ClimbsAboveItsStart(std::string_view path) {
  int depth = 0;
  while (!path.empty() && depth >= 0) {
    const std::size_t end = MinOf(path.find_first_of(kSeparators), path.size());
    const std::string_view name = path.substr(0, end);
    path.remove_prefix(MinOf(end + 1, path.size()));
    if (name == "..") {
      --depth;
    } else if (!name.empty() && name != ".") {
      ++depth;
    }
  }
  return depth < 0;
}

bool BeginsWithMacroOrDrive(std::string_view path) {
  return path.starts_with("$(") || (path.size() > 1 && path[1] == ':');
}

/// True for a name that is a device in every folder, whatever its extension.
bool IsDeviceName(std::string_view name) {
  const std::string base = ToLower(TrimBlanks(name.substr(0, name.find_first_of(".:"))));
  constexpr std::array<std::string_view, 4> kDevices = {"con", "prn", "aux", "nul"};
  if (std::find(kDevices.begin(), kDevices.end(), base) != kDevices.end()) return true;
  const bool is_port = base.size() == 4 && (base.starts_with("com") || base.starts_with("lpt"));
  return is_port && base[3] >= '1' && base[3] <= '9';
}

}  // namespace

bool LiesIn(FileSystem& files, std::string_view path, std::string_view folder) {
  const Result<std::string> full_path = files.FullPath(path);
  if (!full_path.ok()) return true;
  const Result<std::string> full_folder = files.FullPath(folder);
  return full_folder.ok() &&
         FoldName(full_path.value()).starts_with(FoldName(AddBackslash(full_folder.value())));
}

bool LiesInKnownFolder(const UpdateRun& run, std::string_view path) {
  FileSystem& files = run.platform.files;
  if (LiesIn(files, path, run.state.CurrDir) || LiesIn(files, path, run.state.DataPath))
    return true;
  const std::vector<std::string> folders = MacroFolders(run);
  return std::any_of(folders.begin(), folders.end(),
                     [&](const std::string& folder) { return LiesIn(files, path, folder); });
}

bool LeadsOffTheMachine(const UpdateRun& run, std::string_view path) {
  if (IsDeviceName(GetFileName(path))) return true;
  const bool has_server = path.size() > 1 && IsSeparator(path[0]) && IsSeparator(path[1]);
  if (!has_server) return false;
  return !run.platform.files.FullPath(path).ok() || !LiesInKnownFolder(run, path);
}

std::optional<std::string> PackageSource(UpdateRun& run, const std::string& source) {
  std::string path = run.state.CurrDir + source;
  const bool is_outside =
      ClimbsAboveItsStart(source) || !LiesIn(run.platform.files, path, run.state.CurrDir);
  if (is_outside && !run.Tolerate("source outside the package folder: " + source)) {
    return std::nullopt;
  }
  return path;
}

std::optional<std::string> UpdateDescription(UpdateRun& run, const std::string& argument) {
  if (!BeginsWithMacroOrDrive(argument)) return PackageSource(run, argument);
  std::string path = ExpandPath(run, argument);
  if (!LiesInKnownFolder(run, path) &&
      !run.Tolerate("description outside the known folders: " + argument)) {
    return std::nullopt;
  }
  return path;
}

}  // namespace zent
