#pragma once

#include <string>
#include <string_view>

#include "jet/format/Bytes.h"

/// Keys of text in the sort order that Access calls "General" (in later versions "General -
/// Legacy"), without the flag byte. Case does not count; accents, hyphens and apostrophes decide
/// only between texts that are otherwise the same. Trailing blanks, and what follows the 255th
/// UTF-16 unit, do not count.
namespace zent::jet {

/// Appends the key of a Jet 4 text.
void AppendTextKey4(std::string_view utf8, bool ascending, std::string& key);

/// As AppendTextKey4, of the bytes of a field.
void AppendStoredTextKey4(ByteView stored, bool ascending, std::string& key);

/// Appends the key of a Jet 3 text.
void AppendTextKey3(std::string_view utf8, bool ascending, std::string& key);

/// True when both are the same name: names of tables, columns and indexes are unique in this sense.
bool SameKey(std::string_view a, std::string_view b);

}  // namespace zent::jet
