#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Registry.h"

/// The data part of a value line, for every type:
///   "text"  str(2):"text"  str(7):"a\0b\0"   strings; one closing NUL is left out in the file
///   dword:0000002a                           four bytes
///   hex:00,01  hex(b):00,01                  REG_BINARY; any type, with its number in hexadecimal
namespace zent {

/// The value that `data` stands for; nothing when it is none of the forms. Hexadecimal data may be
/// broken into lines.
std::optional<RegistryValue> ParseValueData(std::string_view data);

/// The value line `"name"=data` with a line break behind each of its lines, in the form that Wine
/// writes: hexadecimal data are broken where a line is longer than 76 characters.
std::string FormatValueLines(std::string_view name, const RegistryValue& value,
                             std::string_view line_break);

}  // namespace zent
