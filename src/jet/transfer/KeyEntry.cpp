#include "jet/transfer/KeyEntry.h"

#include <array>
#include <cstddef>

namespace zent::jet {
namespace {

constexpr std::size_t kDigits = sizeof(std::uint64_t);

std::uint8_t Digit(const KeyEntry& entry, std::size_t digit) {
  return static_cast<std::uint8_t>(entry.head >> 8 * digit);
}

/// How many entries there are of each value of a byte.
using Counts = std::array<std::size_t, 256>;

/// Puts the entries in the order of one byte of their heads.
void Distribute(const std::vector<KeyEntry>& from, std::size_t digit, const Counts& counts,
                std::vector<KeyEntry>& to) {
  Counts places;
  std::size_t next = 0;
  for (std::size_t value = 0; value < counts.size(); ++value) {
    places[value] = next;
    next += counts[value];
  }
  for (const KeyEntry& entry : from) to[places[Digit(entry, digit)]++] = entry;
}

}  // namespace

// From the last byte to the first; each step keeps the order of the ones before.
void SortByHead(std::vector<KeyEntry>& entries) {
  if (entries.empty()) return;
  std::array<Counts, kDigits> counts = {};
  for (const KeyEntry& entry : entries) {
    for (std::size_t digit = 0; digit < kDigits; ++digit) ++counts[digit][Digit(entry, digit)];
  }
  std::vector<KeyEntry> others(entries.size());
  for (std::size_t digit = 0; digit < kDigits; ++digit) {
    const bool alike = counts[digit][Digit(entries.front(), digit)] == entries.size();
    if (alike) continue;
    Distribute(entries, digit, counts[digit], others);
    entries.swap(others);
  }
}

}  // namespace zent::jet
