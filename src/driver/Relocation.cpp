#include "driver/Relocation.h"

#include <fmt/format.h>

#include <string>
#include <string_view>

#include "base/Text.h"
#include "driver/run/PathMacros.h"
#include "driver/run/Product.h"
#include "fileops/RegistryCommands.h"
#include "lib/FuncLib.h"
#include "lib/RegFuncs.h"

namespace zent {
namespace {

constexpr std::string_view kDriver = "SQL Native Client";
constexpr std::string_view kDriversKey = R"(SOFTWARE\ODBC\ODBCINST.INI\)";
constexpr std::string_view kSourcesKey = R"(SOFTWARE\ODBC\ODBC.INI\)";
constexpr std::string_view kDriverFile = R"($(WinSysPath)\sqlncli.dll)";
constexpr std::string_view kInstalledSettings = R"($(AppPath)\Korvo.ini)";

/// The file `name` in `folder`, when both are there; else an empty text.
std::string FileIn(UpdateRun& run, const std::string& folder, std::string_view name) {
  if (folder.empty()) return {};
  std::string path = folder + std::string(name);
  return FileExists(run.platform.files, path) ? path : std::string();
}

/// Where the application's settings file is. On NT 6.0 a program that writes below the program
/// files may have been given the virtual store instead.
std::string LocateSettings(UpdateRun& run) {
  // Asked twice, as at the start of the run.
  const bool is_vista = GetOSVersionText(run.platform.system) == "NT 6.0" ||
                        GetOSVersionText(run.platform.system) == "NT 6.0";
  if (is_vista) {
    std::string path = FileIn(run, GetPublicFolder(run.platform), R"(Zent\Korvo.ini)");
    if (!path.empty()) return path;
    path = FileIn(run, GetLocalAppDataFolder(run.platform),
                  R"(VirtualStore\Program Files\Zent\Korvo.ini)");
    if (!path.empty()) return path;
  }
  return ExpandPath(run, kInstalledSettings);
}

/// The text between "DSN=" (any case) and the next ";"; empty when either is missing.
std::string DataSourceName(std::string_view connect_text) {
  constexpr std::string_view kKey = "dsn=";
  const std::size_t key = FindIgnoringCase(connect_text, kKey);
  if (key == std::string_view::npos) return {};
  const std::size_t start = key + kKey.size();
  const std::size_t end = connect_text.find(';', start);
  if (end == std::string_view::npos) return {};
  return std::string(connect_text.substr(start, end - start));
}

bool IsDriverInstalled(const Platform& machine) {
  KeyHandle key = KeyHandle::None;
  const std::string path = fmt::format("{}{}", kDriversKey, kDriver);
  if (!OpenRegKey(machine.registry, KeyHandle::LocalMachine, path, key)) return false;
  std::string driver;
  const bool is_readable = GetRegValue(machine, key, "Driver", driver);
  CloseRegKey(machine.registry, key);
  return is_readable;
}

bool KeyExists(Registry& registry, KeyHandle root, const std::string& path) {
  KeyHandle key = KeyHandle::None;
  if (!OpenRegKey(registry, root, path, key)) return false;
  CloseRegKey(registry, key);
  return true;
}

/// Gives the data source, defined under `root` ("HKCU" or "HKLM"), its new driver.
void PointAtDriver(UpdateRun& run, std::string_view root, const std::string& source) {
  const auto write = [&](const std::string& address, const std::string& text) {
    const Status written = WriteRegistryText(run, address, text);
    if (!written.ok()) run.Fail(written.error().description);
  };
  write(fmt::format("{}|{}{}|Driver", root, kSourcesKey, source), ExpandPath(run, kDriverFile));
  write(fmt::format("{}|{}ODBC Data Sources|{}", root, kSourcesKey, source), std::string(kDriver));
}

void ShowMissingDriver(UpdateRun& run, bool is_needed) {
  run.ShowMsg(
      "SQL Native Client Driver could not be installed because your computer does not have Latest "
      "Windows Installer.");
  run.ShowMsg(fmt::format("Please contact {}.", kSupportContact));
  constexpr std::string_view kReason = "the driver is not installed: SQL Native Client";
  is_needed ? run.Fail(kReason) : run.Warn(kReason);
}

}  // namespace

Status RelocateDataSource(UpdateRun& run, [[maybe_unused]] const TokenList& tokens) {
  // The file found here is meant, not the one that settings of the application are redirected to.
  const std::string connect_text = ReadIniValue(run.platform, LocateSettings(run), "General",
                                                "KorvoDataBase", "", KorvoIni::AsGiven);
  const std::string source = DataSourceName(connect_text);
  if (!IsDriverInstalled(run.platform)) {
    ShowMissingDriver(run, !source.empty());
    return {};
  }
  if (source.empty()) {
    run.Skip("the application's database is no data source");
    return {};
  }

  const std::string key = std::string(kSourcesKey) + source;
  Registry& registry = run.platform.registry;
  if (KeyExists(registry, KeyHandle::CurrentUser, key)) {
    PointAtDriver(run, "HKCU", source);
  } else if (KeyExists(registry, KeyHandle::LocalMachine, key)) {
    PointAtDriver(run, "HKLM", source);
  } else {
    run.ShowMsg(fmt::format("DSN not found in the registry; DSNName={}; DSN={}", source,
                            MaskPassword(connect_text)));
    run.Fail("the data source is not defined: " + source);
  }
  return {};
}

}  // namespace zent
