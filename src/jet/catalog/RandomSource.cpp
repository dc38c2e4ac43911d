#include "jet/catalog/RandomSource.h"

#include <algorithm>
#include <random>

#include "jet/format/Bytes.h"

namespace zent::jet {

RandomSource SystemRandom() {
  return [](std::span<std::uint8_t> bytes) {
    std::random_device device;  // gives 32 bits a call
    for (std::size_t i = 0; i < bytes.size(); i += 4) {
      const std::uint32_t word = device();
      for (std::size_t j = i; j < std::min(i + 4, bytes.size()); ++j) {
        bytes[j] = static_cast<std::uint8_t>(word >> (8 * (j - i)));
      }
    }
  };
}

// The bytes stand in the order of the text: the version leads the seventh, the variant the ninth.
Guid MakeGuid(const RandomSource& random) {
  constexpr std::size_t kVersionAt = 6;
  constexpr std::size_t kVariantAt = 8;
  Guid guid;
  random(guid.bytes);
  guid.bytes[kVersionAt] = static_cast<std::uint8_t>((guid.bytes[kVersionAt] & 0x0FU) | 0x40U);
  guid.bytes[kVariantAt] = static_cast<std::uint8_t>((guid.bytes[kVariantAt] & 0x3FU) | 0x80U);
  return guid;
}

std::int32_t MakeRandomNumber(const RandomSource& random) {
  std::array<std::uint8_t, 4> bytes = {};
  random(bytes);
  const auto number = static_cast<std::int32_t>(LoadU32(bytes, 0));
  return number == 0 ? 1 : number;
}

}  // namespace zent::jet
