#pragma once

#include <string_view>

#include "platform/prefix/settings/IniText.h"

/// Changes to a settings file. Each touches the one line it is about and keeps every other byte:
/// blank lines, indents, comments, line ends. Names and values are UTF-8. Each returns whether a
/// byte changed.
namespace zent {

/// Gives the first `key` of the first section `section` a new value; the line keeps its indent, its
/// spelling of the key and the blanks around "=". A missing key goes behind the last line of the
/// section that is not blank, a missing section behind the last line of the file. A new line ends
/// as the line before it does, CR LF in an empty file, and gives a last line without an end that
/// end.
///
/// The value loses its leading blanks and goes in as it is otherwise: one that holds line breaks
/// makes several lines.
bool SetIniValue(IniText& file, std::string_view section, std::string_view key,
                 std::string_view value);

/// Removes the line of the first `key` of the first section `section`.
bool RemoveIniKey(IniText& file, std::string_view section, std::string_view key);

/// Removes the first section `section` from its header up to the next header.
bool RemoveIniSection(IniText& file, std::string_view section);

}  // namespace zent
