#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Names and texts as the registry files hold them: ASCII, every other character escaped as in a C
/// literal, one escape a UTF-16 unit. Lone surrogates survive both ways.
namespace zent {

/// `text` as it stands between the double quotes of a value line.
std::string EscapeText(std::string_view text);

/// A key's name as it stands between the brackets of a key line; the name of one key, not a path.
std::string EscapeKeyName(std::string_view name);

/// The UTF-8 of an escaped text or key name. Bytes above 127 are read as UTF-8, a broken one as
/// U+FFFD; a backslash before any other character stands for that character.
std::string Unescape(std::string_view escaped);

/// Offset of the first `mark` at or behind `at` that no backslash escapes; npos when there is none.
std::size_t FindUnescaped(std::string_view escaped, char mark, std::size_t at);

/// `text` with broken UTF-8 as U+FFFD and every surrogate pair joined: as it would come back from a
/// registry file.
std::string WellFormedText(std::string_view text);

}  // namespace zent
