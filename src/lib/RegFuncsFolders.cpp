#include "base/Text.h"
#include "lib/FuncLib.h"
#include "lib/RegFuncs.h"

namespace zent {
namespace {

// Where a 64-bit system keeps the App Paths of its 32-bit programs.
constexpr std::string_view kAppPathsKey32 =
    R"(SOFTWARE\Wow6432Node\Microsoft\Windows\CurrentVersion\App Paths\)";

/// A text value by its path; empty when key or value cannot be read.
std::string ReadText(const Platform& machine, KeyHandle root, std::string_view path,
                     std::string_view name) {
  std::string text;
  KeyHandle key = KeyHandle::None;
  if (!OpenRegKey(machine.registry, root, path, key)) return text;
  GetRegValue(machine, key, name, text);
  CloseRegKey(machine.registry, key);
  return text;
}

std::string UserShellFolder(const Platform& machine, std::string_view name) {
  return AddBackslash(ReadText(machine, KeyHandle::CurrentUser, kShellFoldersKey, name));
}

}  // namespace

std::string GetMyDocumentsFolder(const Platform& machine) {
  return UserShellFolder(machine, "Personal");
}

std::string GetDesktopFolder(const Platform& machine) {
  return UserShellFolder(machine, "Desktop");
}

std::string GetAppDataFolder(const Platform& machine) {
  return UserShellFolder(machine, "AppData");
}

std::string GetLocalAppDataFolder(const Platform& machine) {
  return UserShellFolder(machine, "Local AppData");
}

std::string GetCommonAppDataFolder(const Platform& machine) {
  return AddBackslash(
      ReadText(machine, KeyHandle::LocalMachine, kShellFoldersKey, "Common AppData"));
}

std::string GetPublicFolder(const Platform& machine) {
  if (GetOSVersionText(machine.system) != "NT 6.0") return GetCommonAppDataFolder(machine);
  const std::string profile_list = std::string(kNtCurrentVersionKey) + R"(\ProfileList)";
  const std::string folder = ReadText(machine, KeyHandle::LocalMachine, profile_list, "Public");
  const std::string drive = machine.system.EnvironmentVariable("SystemDrive").value_or("");
  return AddBackslash(ReplaceAllIgnoringCase(folder, "%SystemDrive%", drive));
}

std::string GetAppPath(const Platform& machine, std::string_view program) {
  std::string path;
  for (const std::string_view key : {kAppPathsKey, kAppPathsKey32}) {
    path = ReadText(machine, KeyHandle::LocalMachine, std::string(key).append(program), "");
    if (!path.empty()) break;
  }
  std::size_t end = path.rfind('\\');
  if (end == std::string::npos) end = path.rfind('/');
  if (end == std::string::npos) return {};
  path.resize(end);
  if (path.starts_with('"')) path.erase(0, 1);
  return path;
}

}  // namespace zent
