#include "driver/run/PathMacros.h"

#include <algorithm>
#include <array>

#include "base/Text.h"
#include "driver/run/PathBounds.h"
#include "lib/FuncLib.h"
#include "lib/RegFuncs.h"

namespace zent {
namespace {

constexpr std::string_view kMacroStart = "$(";

struct PathMacro {
  std::string_view name;
  std::string (*folder)(const UpdateRun& run);
};

constexpr std::array kPathMacros = {
    PathMacro{"$(apppath)", [](const UpdateRun& run) { return run.state.AppPath; }},
    PathMacro{"$(zentappdatapath)", [](const UpdateRun& run) { return run.state.ZentAppDataPath; }},
    PathMacro{"$(helppath)", [](const UpdateRun& run) { return run.state.HelpPath; }},
    PathMacro{"$(datapath)", [](const UpdateRun& run) { return run.state.DataPath; }},
    PathMacro{"$(winpath)",
              [](const UpdateRun& run) { return GetWindowsDir(run.platform.system); }},
    PathMacro{"$(winsyspath)",
              [](const UpdateRun& run) { return GetSystemDir(run.platform.system); }},
    PathMacro{"$(temppath)", [](const UpdateRun& run) { return GetTempDir(run.platform.system); }},
    PathMacro{"$(programfiles)", [](const UpdateRun& run) { return run.state.ProgramFilesDir; }},
    PathMacro{"$(commonfiles)", [](const UpdateRun& run) { return run.state.CommonFilesDir; }},
    PathMacro{"$(winappdatapath)", [](const UpdateRun& run) { return run.state.WinAppDataDir; }},
    PathMacro{"$(mydocuments)",
              [](const UpdateRun& run) { return GetMyDocumentsFolder(run.platform); }},
    PathMacro{"$(desktop)", [](const UpdateRun& run) { return GetDesktopFolder(run.platform); }},
};

/// Position of the ")" that closes the macro at the start of `argument`; npos without a macro.
std::size_t MacroEnd(std::string_view argument) {
  if (argument.substr(0, kMacroStart.size()) != kMacroStart) return std::string_view::npos;
  return argument.find(')');
}

const PathMacro* FindMacro(std::string_view name) {
  const auto* const found =
      std::find_if(kPathMacros.begin(), kPathMacros.end(),
                   [&](const PathMacro& macro) { return EqualsIgnoringCase(macro.name, name); });
  return found == kPathMacros.end() ? nullptr : found;
}

std::string FromPackageFolder(const UpdateRun& run, const std::string& path) {
  return IsRelativePath(path) ? run.state.CurrDir + path : path;
}

}  // namespace

void ExpandDestFile(const UpdateRun& run, std::string& dest_file, std::string_view destination) {
  const std::size_t end = MacroEnd(destination);
  if (end == std::string_view::npos) return;

  const PathMacro* const macro = FindMacro(destination.substr(0, end + 1));
  std::string path = macro == nullptr ? std::string() : macro->folder(run);
  if (end + 2 < destination.size()) path += destination.substr(end + 2);

  const bool is_folder = end + 1 == destination.size() || IsSeparator(destination.back());
  dest_file = is_folder ? path + dest_file : path;
}

std::string ExpandPath(const UpdateRun& run, std::string_view argument) {
  return ExpandDestination(run, {}, argument);
}

std::string ExpandDestination(const UpdateRun& run, std::string_view name,
                              std::string_view destination) {
  if (MacroEnd(destination) == std::string_view::npos) {
    return FromPackageFolder(run, std::string(destination));
  }
  std::string path(name);
  ExpandDestFile(run, path, destination);
  return FromPackageFolder(run, path);
}

std::optional<std::string> MacroProblem(std::string_view argument) {
  if (argument.substr(0, kMacroStart.size()) != kMacroStart) return std::nullopt;
  const std::size_t end = MacroEnd(argument);
  if (end == std::string_view::npos) return "unclosed path macro in " + std::string(argument);
  if (FindMacro(argument.substr(0, end + 1)) == nullptr) {
    return "unknown path macro " + std::string(argument.substr(0, end + 1));
  }
  if (end + 1 < argument.size() && !IsSeparator(argument[end + 1])) {
    return "text swallowed behind the path macro in " + std::string(argument);
  }
  return std::nullopt;
}

std::vector<std::string> MacroFolders(const UpdateRun& run) {
  std::vector<std::string> folders;
  for (const PathMacro& macro : kPathMacros) {
    std::string folder = macro.folder(run);
    if (!IsBlank(folder)) folders.push_back(std::move(folder));
  }
  return folders;
}

bool IsRelativePath(std::string_view path) {
  if (path.empty() || IsSeparator(path.front())) return false;
  return path.size() < 2 || path[1] != ':';
}

}  // namespace zent
