#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// The lines of a registry file, each read on its own: key lines `[path] seconds`, value lines
/// `"name"=data` and `@=data`, lines behind a number sign. Positions are byte offsets into the
/// file.
namespace zent {

/// One line of a file.
struct TextLine {
  std::string_view text;  ///< without its line break
  std::size_t next = 0;   ///< where the next line begins; the file's size for the last
};

/// The line at `at`, which ends in a line feed (a carriage return before it belongs to the break)
/// or with the file.
TextLine ReadLine(std::string_view file, std::size_t at);

/// A line of a key.
struct KeyLine {
  std::string_view path;   ///< escaped, names divided by two backslashes
  std::size_t behind = 0;  ///< offset in the line of what follows the closing bracket
};

/// Nothing when the line does not begin with a bracket or has no closing one.
std::optional<KeyLine> ParseKeyLine(std::string_view line);

/// Takes the next name, still escaped, off an escaped key path and moves `at` behind it; nothing at
/// the end. Empty names are passed over.
std::optional<std::string_view> NextKeyName(std::string_view path, std::size_t& at);

/// A value with the lines that continue it.
struct ValueLines {
  std::string name;       ///< unescaped; empty for the default value
  std::string_view data;  ///< what follows the equals sign, up to the end of the last line
  std::size_t next = 0;   ///< where the line behind the value begins
};

/// The value whose first line begins at `at`; nothing when that line does not read as a value's.
/// Whether the data make sense is not looked at.
std::optional<ValueLines> ReadValueLines(std::string_view file, std::size_t at);

/// True for a line that can only be the rest of hexadecimal data: indented digits and commas.
bool IsHexContinuation(std::string_view line);

}  // namespace zent
