#include <array>

#include "base/Text.h"
#include "lib/FuncLib.h"
#include "lib/RegFuncs.h"

namespace zent {
namespace {

constexpr std::string_view kKorvoIni = "Korvo.ini";
constexpr std::size_t kBufferSize = 255;  // characters, the closing NUL included

struct PathDefault {
  std::string_view key;
  std::string_view folder;
};

constexpr std::array kPathDefaults = {PathDefault{"outboxpath", "Outbox\\"},
                                      PathDefault{"datapath", "Data\\"},
                                      PathDefault{"temppath", "Temp\\"}};

struct PathMacro {
  std::string_view name;
  std::string (*folder)(const Platform& machine);
};

constexpr std::array kPathMacros = {PathMacro{"$(MyDocuments)", GetMyDocumentsFolder},
                                    PathMacro{"$(WinAppDataPath)", GetAppDataFolder},
                                    PathMacro{"$(WinCommonAppDataPath)", GetCommonAppDataFolder}};

std::string DefaultPath(const std::string& folder, std::string_view key) {
  for (const PathDefault& row : kPathDefaults) {
    if (row.key == ToLower(key)) return folder + std::string(row.folder);
  }
  return {};
}

std::string ExpandPathMacro(const Platform& machine, std::string value) {
  for (const PathMacro& macro : kPathMacros) {
    if (FindIgnoringCase(value, macro.name) == std::string::npos) continue;
    const std::string folder = macro.folder(machine);
    if (folder.ends_with('\\')) {
      // The folder brings its backslash along.
      value = ReplaceAllIgnoringCase(value, std::string(macro.name) + '\\', macro.name);
    }
    return ReplaceAllIgnoringCase(value, macro.name, folder);
  }
  return value;
}

std::string SettingsFile(const Platform& machine, std::string_view file, KorvoIni korvo_ini) {
  const bool is_korvo_ini = FindIgnoringCase(file, "\\korvo.ini") != std::string_view::npos;
  if (!is_korvo_ini || korvo_ini == KorvoIni::AsGiven) return std::string(file);
  const std::string folder = GetKorvoPath(machine, GetKorvoSharedFolder(machine), "IniPath");
  return folder + std::string(kKorvoIni);
}

}  // namespace

std::string GetKorvoPath(const Platform& machine, std::string_view folder, std::string_view key) {
  const std::string base = AddBackslash(folder);
  const std::string value =
      machine.settings
          .Read(base + "KorvoPaths.ini", "General", key, DefaultPath(base, key), kBufferSize)
          .text;
  return AddBackslash(ExpandPathMacro(machine, value));
}

std::string GetKorvoSharedFolder(const Platform& machine) {
  // Without a public folder "Zent" alone would be looked for in the package.
  const std::string public_folder = GetPublicFolder(machine);
  if (!public_folder.empty() && FolderExists(machine.files, public_folder + "Zent")) {
    return public_folder + "Zent\\";
  }
  return AddBackslash(GetAppPath(machine, "Korvo.exe"));
}

std::string ReadIniValue(const Platform& machine, std::string_view file, std::string_view section,
                         std::string_view key, std::string_view default_text, KorvoIni korvo_ini) {
  const std::string path = SettingsFile(machine, file, korvo_ini);
  return machine.settings.Read(path, section, key, default_text, kBufferSize).text;
}

Status WriteIniValue(const Platform& machine, std::string_view file, std::string_view section,
                     std::string_view key, std::string_view value, KorvoIni korvo_ini) {
  return machine.settings.Write(SettingsFile(machine, file, korvo_ini), section, key, value);
}

}  // namespace zent
