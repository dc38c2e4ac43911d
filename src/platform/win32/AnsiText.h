#pragma once

#include <string>
#include <string_view>

#include "base/Status.h"

/// Text at the edge to the ANSI forms of the system's calls, in the code page that the system has
/// set for them (GetACP).
namespace zent {

/// The bytes of UTF-8 text as an ANSI call takes them, ended by c_str(). A character outside the
/// code page, and a NUL, which would cut the text short, are kBadFileName: another name, not a
/// similar one, would be meant.
Result<std::string> AnsiOf(std::string_view text);

/// As AnsiOf for text that is shown or stored, not a name: a character outside the code page
/// becomes "?", and a NUL stays.
std::string ShownAnsiOf(std::string_view text);

/// UTF-8 of the bytes that an ANSI call returned; never fails.
std::string TextOfAnsi(std::string_view ansi);

}  // namespace zent
