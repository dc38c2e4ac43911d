#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "lib/TokenList.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "platform/SystemInfo.h"

/// The small routines that all commands share. Free functions without state; a routine that needs
/// one port of the machine takes that port, one that needs several takes the machine.
namespace zent {

// --- Texts ---

/// True for an empty text, a text of blanks only and a text of NUL characters only.
bool IsBlank(std::string_view text);

/// `text` without one double quote at its start and one at its end; each is taken on its own.
std::string StripQuotes(std::string_view text);

/// The number at the start of `text`: leading blanks and tabs are skipped, a sign, decimals after a
/// "." and an exponent count, whatever the locale. 0 when the text begins with no number. A number
/// too large for the type becomes the largest one, one too small becomes 0: the result is finite.
double LeadingNumber(std::string_view text);

/// The smallest of the values; of equal ones the last.
template <typename T, std::same_as<T>... More>
constexpr T MinOf(T first, const More&... more) {
  ((first = first < more ? first : more), ...);
  return first;
}

/// The largest of the values; of equal ones the last.
template <typename T, std::same_as<T>... More>
constexpr T MaxOf(T first, const More&... more) {
  ((first = more < first ? first : more), ...);
  return first;
}

/// `text` with each of its bytes in the code page of the system turned into its complement: twice
/// gives the text again, as long as neither form is blank, for a blank text comes back unchanged.
/// This hides a stored password from a glance; it protects nothing.
std::string ScrambleText(SystemInfo& system, std::string_view text);

/// `connect_text` with its first "PWD=" (any case), the value and the ";" behind it overwritten by
/// stars, one for each character. A value in braces ends with them, whatever they hold.
std::string MaskPassword(std::string_view connect_text);

/// `text` with every "PWD=" of it overwritten in that way.
std::string MaskPasswords(std::string_view text);

/// Cuts `line` at every `delimiter` (compared exactly) and returns the number of tokens.
///
/// - Two adjacent delimiters give an empty token; a delimiter at the end of the line gives none; a
///   line without a delimiter, the empty line too, is one token. Blanks stay.
/// - With an `opening_quote`, a delimiter behind an odd number of quotes does not cut: a quoted
/// text
///   may hold it. When the number stays odd, the rest of the line is one token. The quotes stay in
///   the token (StripQuotes takes them off). A blank `opening_quote` is none.
/// - `closing_quote` is taken for the record of the two quotes alone and changes nothing.
///
/// Errors: kInvalidProcedureCall for an empty delimiter, kOutOfStringSpace for a line of more than
/// kMaxTokens tokens (no command has them, and their list would be many times the line); the list
/// is empty then. Whoever reads lines for the user shows it as "(GetTokens) Error: " with the line.
/// Takes time in proportion to the line.
inline constexpr std::size_t kMaxTokens = 65536;
Result<std::size_t> GetTokens(std::string_view line, std::string_view delimiter, TokenList& tokens,
                              std::string_view opening_quote = {},
                              std::string_view closing_quote = {});

// --- Names of files ---

/// `path` without the blanks at its ends and with a backslash at its end, unless it ends with "\"
/// or "/" already. A blank path becomes empty.
std::string AddBackslash(std::string_view path);

/// The text behind the last "\" or "/" of `path`; all of it when there is none.
std::string GetFileName(std::string_view path);

/// The text behind the last "." of `name`, with that dot if asked for; empty when there is no dot
/// or nothing behind it. The last dot of the whole text counts, so pass a name without its folder.
std::string GetFileExtension(std::string_view name, bool with_dot = false);

/// `name` with the time put before its extension: "Korvo.exe" at "DateOnly" becomes
/// "Korvo 2005-01-02.exe", at "TimeOnly" "Korvo 23-59-01.exe", and at any other mode
/// "Korvo 2005-01-02 23-59-01.exe". A blank name gives an empty text.
///
/// The last dot of the whole text begins the extension: a name without an extension in a folder
/// with a dot is cut there. This is kept: the name is only ever used as a whole.
std::string MakeTimeStampedName(std::string_view name, std::string_view mode,
                                const LocalTime& time);

// --- Files and folders ---

/// True when a file matches `path`, whatever its attributes; the last part may hold wildcards. A
/// folder is no file.
bool FileExists(FileSystem& files, std::string_view path);

/// True when a plain directory lookup of `path` finds a file, one that asks for no special
/// attribute: hidden and system files do not count, read-only ones do. Wildcards as above.
bool PlainFileExists(FileSystem& files, std::string_view path);

/// True when the folder exists; separators at the end of `path` do not matter.
bool FolderExists(FileSystem& files, std::string_view path);

/// Deletes every file that matches `path` and is neither hidden nor a system file: those a plain
/// directory lookup does not find. Goes on past a file that it cannot delete. Returns the number of
/// the last error, 0 when all went well or nothing matched.
int KillFile(FileSystem& files, std::string_view path);

/// The folders of the system, each with a backslash at its end.
std::string GetWindowsDir(SystemInfo& system);
std::string GetSystemDir(SystemInfo& system);
std::string GetTempDir(SystemInfo& system);

// --- Settings of the application ---

/// The path that "KorvoPaths.ini" in `folder` gives for `key` ("IniPath", "OutboxPath", "DataPath",
/// "TempPath", any case), with a backslash at its end. Missing, the last three are the folders
/// "Outbox", "Data" and "Temp" of `folder`; any other key is empty. One of "$(MyDocuments)",
/// "$(WinAppDataPath)" and "$(WinCommonAppDataPath)" (the first in this order that the value holds)
/// stands for that folder; a backslash behind it adds no second one.
std::string GetKorvoPath(const Platform& machine, std::string_view folder, std::string_view key);

/// The folder that all users of the application share, with a backslash at its end: "Zent" in the
/// public folder where it exists, else the folder of the installed "Korvo.exe".
std::string GetKorvoSharedFolder(const Platform& machine);

/// Whether a path that contains "\Korvo.ini" is exchanged for the application's settings file:
/// "Korvo.ini" in the folder that "IniPath" of the shared folder's paths file names. When that
/// names none, the file has no folder, and so lies in the Windows folder.
enum class KorvoIni { Redirected, AsGiven };

/// The value of `key` in `section` of a settings file, at most 254 characters; `default_text` when
/// it is missing.
std::string ReadIniValue(const Platform& machine, std::string_view file, std::string_view section,
                         std::string_view key, std::string_view default_text,
                         KorvoIni korvo_ini = KorvoIni::Redirected);

/// Sets `key` of `section`. The commands show nothing of a failure; it is returned for their
/// record.
Status WriteIniValue(const Platform& machine, std::string_view file, std::string_view section,
                     std::string_view key, std::string_view value,
                     KorvoIni korvo_ini = KorvoIni::Redirected);

}  // namespace zent
