#pragma once

#include <windows.h>

#include <cstdint>

namespace zent {

enum class IconSize : std::uint8_t { Small, Large };

/// The icon of the program, its resource 1, or the system's for a program without one. The system
/// owns it.
HICON AppIcon(IconSize size);

}  // namespace zent
