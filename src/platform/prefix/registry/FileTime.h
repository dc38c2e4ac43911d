#pragma once

#include <cstdint>
#include <functional>

namespace zent {

/// Gives the present time in units of 100 ns since 1601, as Windows numbers file times.
using FileTimeSource = std::function<std::uint64_t()>;

/// The time of this computer.
std::uint64_t SystemFileTime();

}  // namespace zent
