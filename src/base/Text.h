#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Small text routines. Case here is that of the ASCII letters: keywords, macros, file extensions
/// and keys of the system are ASCII. Names of files and registry keys fold with base/CaseFold.h.
namespace zent {

inline constexpr std::string_view kLineBreak = "\r\n";

/// `text` with A to Z made small.
std::string ToLower(std::string_view text);

/// True when both are equal without regard to case.
bool EqualsIgnoringCase(std::string_view a, std::string_view b);

/// Position of `pattern` in `text` from `from` on, without regard to case; npos when absent.
std::size_t FindIgnoringCase(std::string_view text, std::string_view pattern, std::size_t from = 0);

/// `text` with every `pattern` (any case) replaced, from left to right, each once.
std::string ReplaceAllIgnoringCase(std::string_view text, std::string_view pattern,
                                   std::string_view replacement);

/// `text` without the blanks (only blanks, not tabs) at its ends.
std::string_view TrimBlanks(std::string_view text);

/// Number of characters of a UTF-8 text; a byte that is no UTF-8 counts as one.
std::size_t CountCharacters(std::string_view utf8);

/// The byte position behind the first `count` characters of `utf8`, or its size when it has fewer.
std::size_t SkipCharacters(std::string_view utf8, std::size_t count);

/// The first `count` characters of `utf8`.
std::string_view FirstCharacters(std::string_view utf8, std::size_t count);

/// `utf8` on one line, and without what a terminal would take for an order: "\\n", "\\r", "\\t",
/// and
/// "\\x1b" for any other control, those from U+0080 to U+009F included.
std::string OneLine(std::string_view utf8);

}  // namespace zent
