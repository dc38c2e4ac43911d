#pragma once

#include <string>

namespace zent {

/// The name of the computer that the program runs on, in UTF-8.
std::string ComputerName();

}  // namespace zent
