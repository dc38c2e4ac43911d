#pragma once

#include <string>
#include <string_view>

#include "base/RuntimeError.h"

/// The forms in which the updater speaks, in one place.
namespace zent {

/// Title of every box that has no title of its own.
inline constexpr std::string_view kDefaultTitle = "ZentUpdate";

/// `message` as an Oracle installation reads it: written for SQL Server, it loses that name. The
/// replacements are kept with their odd blanks: " Server" for "SQL Server".
std::string OracleWording(std::string_view message);

/// True when the window title makes the run one over an Oracle database.
bool IsOracleTitle(std::string_view title);

/// The text of an error box: headline, CR LF, "Description: " and text, CR LF, "Number: " and
/// number.
std::string ErrorText(std::string_view headline, const RuntimeError& error);

/// The last two lines of that text, as they also go to the message box after a headline.
std::string DescriptionLine(const RuntimeError& error);
std::string NumberLine(const RuntimeError& error);

/// An error as the record of a command gives it: "Permission denied (70)".
std::string ReasonOf(const RuntimeError& error);

}  // namespace zent
