#pragma once

#include <string_view>

namespace zent::testing {

/// Plays the part of another program on the desktop; 0 when all was as that program needs it.
int PlayPart(std::string_view part);

}  // namespace zent::testing
