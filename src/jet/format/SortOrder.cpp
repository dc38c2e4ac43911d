#include "jet/format/SortOrder.h"

#include <algorithm>
#include <array>
#include <span>

#include "jet/format/Layout.h"

namespace zent::jet {
namespace {

constexpr SortRun kOrder4[] = {
#include "jet/format/general4.inc"
};
constexpr SortRun kOrder3[] = {
#include "jet/format/general3.inc"
};
constexpr SortRun kMapped3[] = {
#include "jet/format/general3-mapped.inc"
};

constexpr std::size_t kBlocks = 257;

/// For each high byte the first run that reaches into its block of 256 units.
constexpr std::array<std::uint16_t, kBlocks> BlockStarts(std::span<const SortRun> runs) {
  std::array<std::uint16_t, kBlocks> starts = {};
  std::uint16_t run = 0;
  for (std::size_t block = 0; block < kBlocks; ++block) {
    while (run < runs.size() && runs[run].last < block * 256) ++run;
    starts[block] = run;
  }
  return starts;
}

constexpr std::array<std::uint16_t, kBlocks> kStarts4 = BlockStarts(kOrder4);

/// The run of each unit below 256, for most text is of these.
constexpr std::array<std::uint16_t, 256> LatinRuns(std::span<const SortRun> runs) {
  std::array<std::uint16_t, 256> found = {};
  std::uint16_t run = 0;
  for (std::size_t unit = 0; unit < found.size(); ++unit) {
    while (runs[run].last < unit) ++run;
    found[unit] = run;
  }
  return found;
}

constexpr std::array<std::uint16_t, 256> kLatin4 = LatinRuns(kOrder4);
constexpr std::array<std::uint16_t, 256> kLatin3 = LatinRuns(kOrder3);

constexpr SortEntry EntryOf(const SortRun& run, char16_t unit) {
  const std::int64_t k = unit - run.first;
  return {.sort_class = run.sort_class,
          .code_size = run.code_size,
          .weight_size = run.weight_size,
          .code = static_cast<std::uint32_t>(run.code + k * run.code_step),
          .weight = static_cast<std::uint16_t>(run.weight + k * run.weight_step)};
}

constexpr std::array<AsciiCode, 128> AsciiCodes() {
  std::array<AsciiCode, 128> codes = {};
  for (std::size_t unit = 0; unit < codes.size(); ++unit) {
    const SortEntry entry = EntryOf(kOrder4[kLatin4[unit]], static_cast<char16_t>(unit));
    if (entry.sort_class != SortClass::Plain || entry.weight_size != 0) continue;
    codes[unit].size = entry.code_size;
    const unsigned above = entry.code_size == 2 ? 8 : 0;
    codes[unit].bytes = {static_cast<char>(entry.code >> above), static_cast<char>(entry.code)};
  }
  return codes;
}

constexpr std::array<AsciiCode, 128> kAscii4 = AsciiCodes();

/// The run of `unit`, or the end: the first one of a sorted range that does not end before it.
const SortRun* FindRun(const SortRun* begin, const SortRun* end, char16_t unit) {
  return std::partition_point(begin, end, [&](const SortRun& run) { return run.last < unit; });
}

}  // namespace

SortEntry SortEntry4(char16_t unit) {
  if (unit < 256) return EntryOf(kOrder4[kLatin4[unit]], unit);
  const std::size_t block = unit / 256U;
  const SortRun* const end = std::end(kOrder4);
  const SortRun* const last = std::min(end, &kOrder4[0] + kStarts4[block + 1] + 1);
  const SortRun* const run = FindRun(&kOrder4[kStarts4[block]], last, unit);
  return run == end || run->first > unit ? SortEntry{} : EntryOf(*run, unit);
}

const AsciiCode& AsciiCode4(char character) {
  static constexpr AsciiCode kNone = {};
  const auto unit = static_cast<unsigned char>(character);
  return unit < kAscii4.size() ? kAscii4[unit] : kNone;
}

SortEntry SortEntry3(char16_t unit) {
  if (unit < 256) return EntryOf(kOrder3[kLatin3[unit]], unit);
  const SortRun* const run = FindRun(std::begin(kMapped3), std::end(kMapped3), unit);
  if (run == std::end(kMapped3) || run->first > unit) return {};
  const auto byte = static_cast<char16_t>(EntryOf(*run, unit).code);
  return EntryOf(kOrder3[kLatin3[byte & 0xFFU]], byte);
}

void AppendCode(std::uint32_t code, unsigned size, std::string& bytes) {
  while (size-- > 0) bytes.push_back(static_cast<char>(code >> (8 * size)));
}

std::u16string_view KeyPart(std::u16string_view text) {
  text = text.substr(0, kMaxTextUnits);
  while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
  return text;
}

}  // namespace zent::jet
