#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Registry.h"
#include "platform/SystemInfo.h"

namespace zent {

/// What a machine's registry says of its system. There is no process environment to ask: a variable
/// is looked up in the user's "Volatile Environment" and "Environment", in the machine's
/// Environment key, and then among those that Windows itself provides (SystemRoot, ProgramFiles,
/// PUBLIC ...). What cannot be read counts as missing.
class PrefixSystemInfo : public SystemInfo {
 public:
  /// `registry` is the machine's and outlives this.
  explicit PrefixSystemInfo(Registry& registry) : registry_(registry) {}

  /// From the value CurrentVersion ("6.0"); 5.1 when it is missing or reads otherwise.
  OsVersion Version() override;
  /// From the value SystemRoot; C:\windows when it is missing or no full path.
  std::string WindowsFolder() override;
  std::string SystemFolder() override;
  /// The first of TMP, TEMP and USERPROFILE that is set and not empty, else the Windows folder.
  std::string TempFolder() override;
  /// A REG_EXPAND_SZ value comes expanded. A variable that names itself, as in "%PATH%;C:\Korvo",
  /// means the one further down the list of places.
  std::optional<std::string> EnvironmentVariable(std::string_view name) override;
  /// Always in code page 1252: the settings files of the machine are kept in it, too.
  std::string ToAnsi(std::string_view text) override;
  std::string FromAnsi(std::string_view bytes) override;

 private:
  /// A variable whose value is being expanded, and the place it was found in.
  struct Expansion {
    std::string name;  ///< folded
    std::size_t place = 0;
  };

  std::optional<std::string> ReadText(KeyHandle root, std::string_view path, std::string_view name);
  std::optional<std::string> ProvidedVariable(std::string_view name);

  Registry& registry_;
  std::vector<Expansion> expanding_;
  int lookups_left_ = 0;
};

}  // namespace zent
