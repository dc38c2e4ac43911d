#pragma once

#include <array>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "platform/Clock.h"
#include "platform/Platform.h"
#include "platform/Registry.h"
#include "platform/Shell.h"
#include "platform/SystemInfo.h"
#include "ui/UpdateWindow.h"

/// The registry, the folders it names, and a few services of the system. Nothing is shown and
/// nothing is raised: a routine reports failure by its result or an empty text.
namespace zent {

// --- Keys and values ---

/// The roots by their index.
inline constexpr std::array kRootKeys = {KeyHandle::ClassesRoot, KeyHandle::CurrentUser,
                                         KeyHandle::LocalMachine, KeyHandle::Users};

inline constexpr std::string_view kCurrentVersionKey =
    R"(SOFTWARE\Microsoft\Windows\CurrentVersion)";
inline constexpr std::string_view kNtCurrentVersionKey =
    R"(SOFTWARE\Microsoft\Windows NT\CurrentVersion)";
inline constexpr std::string_view kShellFoldersKey =
    R"(SOFTWARE\Microsoft\Windows\CurrentVersion\Explorer\Shell Folders)";
/// The file name of a program follows.
inline constexpr std::string_view kAppPathsKey =
    R"(SOFTWARE\Microsoft\Windows\CurrentVersion\App Paths\)";

/// "HKEY_LOCAL_MACHINE" and the like; empty for a handle that is none of the roots.
std::string GetRootKeyName(KeyHandle root);

/// Closes a key; false when what was created could not be stored.
bool CloseRegKey(Registry& registry, KeyHandle key);

/// Opens an existing key into `key`, to be closed with CloseRegKey; false when there is none, and
/// `key` stays as it was.
bool OpenRegKey(Registry& registry, KeyHandle root, std::string_view subkey, KeyHandle& key);

/// As OpenRegKey, but creates every level that is missing. One backslash at the start of `subkey`
/// does not count. The error is for the record of a command.
Status CreateRegKey(Registry& registry, KeyHandle root, std::string_view subkey, KeyHandle& key);

/// Reads a text value; an empty `name` is the key's default value. The text ends before its first
/// NUL; that of an expandable value has its environment variables replaced and is cut to 1023
/// characters. False, with `text` as it was, when there is no such value or it is no text.
bool GetRegValue(const Platform& machine, KeyHandle key, std::string_view name, std::string& text);

/// Writes a text value. The error is for the record of a command.
Status SetRegValue(Registry& registry, KeyHandle key, std::string_view name, std::string_view text);

// --- Folders; each with a backslash at its end, or empty when the registry does not tell ---

/// Folders of the user.
std::string GetMyDocumentsFolder(const Platform& machine);
std::string GetDesktopFolder(const Platform& machine);
std::string GetAppDataFolder(const Platform& machine);
std::string GetLocalAppDataFolder(const Platform& machine);

/// The application data of all users.
std::string GetCommonAppDataFolder(const Platform& machine);

/// The documents root of all users: on NT 6.0 the public profile, on every other system (NT 6.1 and
/// later included) the application data of all users.
std::string GetPublicFolder(const Platform& machine);

/// The folder of an installed program ("Korvo.exe") by its App Paths entry, WITHOUT a backslash at
/// its end; empty when it is not installed. An entry that this program's view of the registry does
/// not hold is looked up among those of 32-bit programs.
std::string GetAppPath(const Platform& machine, std::string_view program);

// --- Services of the system ---

/// The family and version of the system: "NT 6.0" for Vista, "95 4.10", or "Win" and the version.
std::string GetOSVersionText(SystemInfo& system);

/// Asks the first top-level window of that title (any case) to close, and waits until no window has
/// the title or `seconds` have passed; the updater's own `window` processes its events meanwhile.
/// True when the window is gone. Ends early, too, when the user closes the updater. An empty title
/// means no window.
bool CloseWindowByTitle(Shell& shell, Clock& clock, UpdateWindow& window, std::string_view title,
                        double seconds);

/// Waits `seconds` (fractions count; none for a negative number or NaN), over midnight too. Sleeps
/// `sleep_step_ms` milliseconds at a time when that is above 0. With `keep_responsive` the window
/// processes its events in between, and the pause ends early when the user closes it.
void Pause(Clock& clock, UpdateWindow& window, double seconds, bool keep_responsive,
           int sleep_step_ms = 0);

/// Gets this process the right to shut the machine down.
bool EnableShutdownPrivilege(Shell& shell);

/// How a session is to end; none of them shuts the machine down.
struct ShutdownFlags {
  bool force = false;  ///< also end programs that hang
  bool restart = false;
  bool power_off = false;  ///< goes before `restart`
};

/// Ends the session of the machine. On the NT family nothing happens without the right to do so:
/// that is kPermissionDenied. The error is for the record; nobody is asked or told.
Status ShutdownWindows(const Platform& machine, const ShutdownFlags& flags);

}  // namespace zent
