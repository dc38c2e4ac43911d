#include "lib/SetUpFuncs.h"

#include <array>
#include <optional>

#include "base/Text.h"
#include "lib/FuncLib.h"
#include "lib/RegFuncs.h"

namespace zent {
namespace {

constexpr std::string_view kLinkExtension = ".lnk";
constexpr std::string_view kNoNameCharacters = "\\/:*?\"<>|";

/// A folder of the shell, by its way from the program menu and its value among the shell folders.
struct ShellFolder {
  std::string_view way;
  std::string_view user_value;
  std::string_view common_value;
};

// The longest way first: each begins with the ones below it.
constexpr std::array kShellFolders = {
    ShellFolder{R"(..\..\Desktop)", "Desktop", "Common Desktop"},
    ShellFolder{"..", "Start Menu", "Common Start Menu"},
    ShellFolder{"", "Programs", "Common Programs"},
};

/// What is left of `folder` behind `way`; nothing when it goes another way.
std::optional<std::string_view> RestBehind(std::string_view folder, std::string_view way) {
  if (way.empty()) return folder;
  if (!EqualsIgnoringCase(folder.substr(0, way.size()), way)) return std::nullopt;
  const std::string_view rest = folder.substr(way.size());
  if (rest.empty()) return rest;
  if (rest.front() != '\\') return std::nullopt;
  return rest.substr(1);
}

std::string ReadShellFolder(const Platform& machine, KeyHandle root, std::string_view value) {
  std::string path;
  KeyHandle key = KeyHandle::None;
  if (!OpenRegKey(machine.registry, root, kShellFoldersKey, key)) return path;
  GetRegValue(machine, key, value, path);
  CloseRegKey(machine.registry, key);
  return AddBackslash(path);
}

Result<std::string> PathOf(const Platform& machine, const ShellFolder& folder, bool is_private) {
  std::string path = ReadShellFolder(machine, KeyHandle::CurrentUser, folder.user_value);
  if (path.empty() && !is_private) {
    path = ReadShellFolder(machine, KeyHandle::LocalMachine, folder.common_value);
  }
  if (path.empty()) return StandardError(kPathNotFound, std::string(folder.user_value));
  return path;
}

constexpr std::size_t kDriveRootSize = 3;

/// Where the first level of a full path begins: behind the drive, or behind server and share, which
/// are no folders that could be asked for or made.
std::size_t RootSize(std::string_view path) {
  if (!path.starts_with(R"(\\)")) return kDriveRootSize;
  const std::size_t share = path.find('\\', 2);
  if (share == std::string_view::npos) return path.size();
  return MinOf(path.find('\\', share + 1), path.size() - 1) + 1;
}

/// Makes every missing level of `folder`, a full path that ends with a backslash.
Status MakeFolders(FileSystem& files, const std::string& folder) {
  if (FolderExists(files, folder)) return {};
  for (std::size_t end = folder.find('\\', RootSize(folder)); end != std::string::npos;
       end = folder.find('\\', end + 1)) {
    const std::string level = folder.substr(0, end);
    if (FolderExists(files, level)) continue;
    Status created = files.CreateFolder(level);
    if (!created.ok()) return created;
  }
  return {};
}

/// The folder of a full path; that of a file at the root of a drive is the root.
std::string HomeOf(std::string_view path) {
  if (path.empty()) return {};
  const std::size_t separator = path.substr(0, path.size() - 1).rfind('\\');
  if (separator == std::string_view::npos) return {};
  return std::string(path.substr(0, separator < kDriveRootSize ? kDriveRootSize : separator));
}

bool IsFileName(std::string_view name) {
  return !IsBlank(name) && name.find_first_of(kNoNameCharacters) == std::string_view::npos;
}

/// What the shortcut is to be, in the terms of the toolkit's own call.
struct ToolkitLink {
  std::string_view folder;
  std::string_view name;
  std::string_view target;
  std::string_view arguments;
  bool is_private = false;
  std::string_view parent_folder;
};

/// The folder that the link goes to, with a backslash at its end.
Result<std::string> FolderOf(const Platform& machine, const ToolkitLink& link) {
  if (!EqualsIgnoringCase(link.parent_folder, kProgramsMacro)) {
    return StandardError(kInvalidProcedureCall);
  }
  for (const ShellFolder& shell_folder : kShellFolders) {
    const std::optional<std::string_view> rest = RestBehind(link.folder, shell_folder.way);
    if (!rest) continue;
    Result<std::string> path = PathOf(machine, shell_folder, link.is_private);
    if (!path.ok()) return path;
    return AddBackslash(path.value() + std::string(*rest));
  }
  return StandardError(kPathNotFound);
}

Status MakeLink(const Platform& machine, const ToolkitLink& link) {
  if (!IsFileName(link.name)) return StandardError(kBadFileName);
  const Result<std::string> folder = FolderOf(machine, link);
  if (!folder.ok()) return folder.error();
  Status made = MakeFolders(machine.files, folder.value());
  if (!made.ok()) return made;

  const std::string target = machine.files.FullPath(link.target).value_or(std::string(link.target));
  // A program that is started from a menu finds its own files beside it.
  return machine.links.Create(folder.value() + std::string(link.name) + std::string(kLinkExtension),
                              {.target = target,
                               .arguments = std::string(link.arguments),
                               .working_folder = HomeOf(target)});
}

}  // namespace

Status CreateShellLink(const Platform& machine, std::string_view target, std::string_view folder,
                       std::string_view arguments, std::string_view link_name,
                       std::string& parent_folder) {
  if (IsBlank(parent_folder)) parent_folder = kProgramsMacro;
  const bool is_private = machine.system.Version().platform == kPlatform9x;
  return MakeLink(machine, {.folder = folder,
                            .name = link_name,
                            .target = target,
                            .arguments = arguments,
                            .is_private = is_private,
                            .parent_folder = parent_folder});
}

}  // namespace zent
