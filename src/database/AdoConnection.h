#pragma once

#include <string>
#include <string_view>

#include "database/port/AccessEngine.h"

/// Connection texts of the other interface to the engine of Access files: "KEY=value" pairs joined
/// by ";".
namespace zent {

/// The text with which an Access file is opened. Holds the password: never to be shown.
std::string AdoConnectionText(std::string_view path, std::string_view password);

/// What such a text asks of the engine. Keys are taken in any case, blanks around "=" and ";" do
/// not count, and of two equal keys the last does. A ";" ends a value wherever it stands, so that a
/// password that holds one is cut, as it always was.
AccessOpen AccessOpenOf(std::string_view connection_text);

}  // namespace zent
