#pragma once

#include <cstdint>

#include "jet/format/Bytes.h"

namespace zent::jet {

/// 64 bits over `bytes`, different for every change of up to eight bytes in a row; `seed` ties it
/// to its place. Not against an attacker.
std::uint64_t Checksum(ByteView bytes, std::uint64_t seed);

}  // namespace zent::jet
