#include "jet/tools/EntryDigest.h"

namespace zent::jet {
namespace {

// FNV-1a, with a finish that spreads every bit (that of MurmurHash 3): sums of the plain values
// would be alike for entries that are.
constexpr std::uint64_t kBasis = 0xCBF29CE484222325U;
constexpr std::uint64_t kPrime = 0x100000001B3U;

constexpr std::uint64_t Step(std::uint64_t hash, std::uint8_t byte) {
  return (hash ^ byte) * kPrime;
}

constexpr std::uint64_t Finish(std::uint64_t hash) {
  hash = (hash ^ (hash >> 33U)) * 0xFF51AFD7ED558CCDU;
  hash = (hash ^ (hash >> 33U)) * 0xC4CEB9FE1A85EC53U;
  return hash ^ (hash >> 33U);
}

}  // namespace

void EntryDigest::Add(std::string_view key, RowPointer row) {
  std::uint64_t hash = kBasis;
  for (unsigned shift = 0; shift < 32; shift += 8) {
    hash = Step(hash, static_cast<std::uint8_t>(row.packed() >> shift));
  }
  for (const char c : key) hash = Step(hash, static_cast<std::uint8_t>(c));
  hash = Finish(hash);
  ++count_;
  sum_ += hash;
  mixed_sum_ += Finish(hash + kBasis);
}

}  // namespace zent::jet
