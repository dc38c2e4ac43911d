#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "jet/format/Value.h"

namespace zent::jet {

/// Fills the bytes with random ones.
using RandomSource = std::function<void(std::span<std::uint8_t>)>;

/// The source of the system.
RandomSource SystemRandom();

/// A GUID of version 4: random but for the bits that say so.
Guid MakeGuid(const RandomSource& random);

/// A number for a random AutoNumber: any but 0.
std::int32_t MakeRandomNumber(const RandomSource& random);

}  // namespace zent::jet
