#pragma once

#include <string>
#include <string_view>

/// Windows code page 1252, the ANSI code page of the installation. The five bytes that it leaves
/// undefined (81 8D 8F 90 9D) map to the controls of the same number, both ways: a scrambled
/// password holds them. Source: the table CP1252.TXT that the Unicode Consortium publishes.
namespace zent {

/// UTF-8 of ANSI bytes; never fails.
std::string FromAnsi(std::string_view ansi);

/// ANSI bytes of UTF-8 text; a character outside the code page becomes "?".
std::string ToAnsi(std::string_view utf8);

}  // namespace zent
