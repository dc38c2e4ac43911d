#include "jet/storage/Checksum.h"

namespace zent::jet {
namespace {

constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15U;  // the golden ratio, a usual multiplier

// Each step is a one-to-one map of the state, so that a change of one word is never lost.
constexpr std::uint64_t Mix(std::uint64_t state, std::uint64_t word) {
  state = (state ^ word) * kOdd;
  return state ^ (state >> 32U);
}

}  // namespace

std::uint64_t Checksum(ByteView bytes, std::uint64_t seed) {
  std::uint64_t state = Mix(seed, bytes.size());
  std::size_t at = 0;
  for (; at + 8 <= bytes.size(); at += 8) state = Mix(state, LoadU64(bytes, at));
  for (; at < bytes.size(); ++at) state = Mix(state, bytes[at]);
  return state;
}

}  // namespace zent::jet
