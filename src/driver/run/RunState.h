#pragma once

#include <string>

namespace zent {

/// What the commands of one update share. Folders end with a backslash.
struct RunState {
  std::string AppName;            ///< the installed application; also names its per-user settings
  std::string AppExe;             ///< AppName + ".exe"
  std::string AppPath;            ///< where the application is installed
  std::string ProgramFilesDir;    ///< the system's program-files folder
  std::string CommonFilesDir;     ///< the system's common-files folder
  std::string CommonAppDataDir;   ///< for all users; filled by GetCommonAppDataDir, not at start
  std::string WinAppDataDir;      ///< the user's application-data folder
  std::string DataPath;           ///< the application's data folder
  std::string ZentAppDataPath;    ///< the product family's folder under the application-data area
  std::string KorvoDataBaseName;  ///< path of the .mdb file, or a connect text that begins "DSN="
  std::string HelpPath;           ///< AppPath + "ZentHelp\"
  std::string IniFileName;        ///< full path of the application's own settings file
  std::string SetupLstFileName;   ///< full path of ZentUpdate.ini: settings and setup list
  std::string CurrDir;            ///< the package folder, where the updater was started
  std::string PatchFileName;      ///< read from ZentUpdate.ini, there for the commands to use

  bool ErrorOccurred = false;    ///< a command failed: the list ends after its line
  bool xml_load_failed = false;  ///< an XML file could not be loaded; never cleared
  bool RebootComputer = false;   ///< a file in use was replaced; never cleared
  bool CopyExeFailed = false;    ///< that file was a program; never cleared
  bool IsVista = false;          ///< the system's version text is "NT 6.0"
};

/// Texts that the window keeps with its buttons.
struct ButtonTags {
  std::string cmdClose;     ///< the AutoClose setting: "yes", "noerrors" or anything else
  std::string cmdContinue;  ///< "Wait" while the minimum-version check waits for the button
};

}  // namespace zent
