#pragma once

#include <string>
#include <string_view>

#include "base/Status.h"
#include "platform/Platform.h"

/// The per-user settings of applications: texts by application, section and key, where the runtime
/// of the installed application keeps them too. They are the values of the registry key
/// "Software\VB and VBA Program Settings\APPLICATION\SECTION" of the current user.
namespace zent {

/// The setting, or `default_text` when it is missing or no text.
std::string GetAppSetting(const Platform& machine, std::string_view app, std::string_view section,
                          std::string_view key, std::string_view default_text = {});

/// Stores a setting. Errors: kInvalidProcedureCall when a name is empty, those of the registry.
Status SaveAppSetting(const Platform& machine, std::string_view app, std::string_view section,
                      std::string_view key, std::string_view value);

/// True when the application has never been started by this user: its setting "LastRunDateTime" in
/// "Settings" is missing or no date.
bool HasNeverRun(const Platform& machine, std::string_view app);

}  // namespace zent
