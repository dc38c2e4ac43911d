#include "jet/tools/Sha256.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>

namespace zent::jet {
namespace {

constexpr std::array<std::uint32_t, 64> kRounds = {
    0x428A2F98, 0x71374491, 0xB5C0FBCF, 0xE9B5DBA5, 0x3956C25B, 0x59F111F1, 0x923F82A4, 0xAB1C5ED5,
    0xD807AA98, 0x12835B01, 0x243185BE, 0x550C7DC3, 0x72BE5D74, 0x80DEB1FE, 0x9BDC06A7, 0xC19BF174,
    0xE49B69C1, 0xEFBE4786, 0x0FC19DC6, 0x240CA1CC, 0x2DE92C6F, 0x4A7484AA, 0x5CB0A9DC, 0x76F988DA,
    0x983E5152, 0xA831C66D, 0xB00327C8, 0xBF597FC7, 0xC6E00BF3, 0xD5A79147, 0x06CA6351, 0x14292967,
    0x27B70A85, 0x2E1B2138, 0x4D2C6DFC, 0x53380D13, 0x650A7354, 0x766A0ABB, 0x81C2C92E, 0x92722C85,
    0xA2BFE8A1, 0xA81A664B, 0xC24B8B70, 0xC76C51A3, 0xD192E819, 0xD6990624, 0xF40E3585, 0x106AA070,
    0x19A4C116, 0x1E376C08, 0x2748774C, 0x34B0BCB5, 0x391C0CB3, 0x4ED8AA4A, 0x5B9CCA4F, 0x682E6FF3,
    0x748F82EE, 0x78A5636F, 0x84C87814, 0x8CC70208, 0x90BEFFFA, 0xA4506CEB, 0xBEF9A3F7, 0xC67178F2};

constexpr std::size_t kLengthSize = 8;  // of the last block: the number of bits

std::array<std::uint32_t, 64> Schedule(ByteView block) {
  std::array<std::uint32_t, 64> words = {};
  for (std::size_t i = 0; i < 16; ++i) words[i] = LoadBigU32(block, 4 * i);
  for (std::size_t i = 16; i < words.size(); ++i) {
    const std::uint32_t a = words[i - 15];
    const std::uint32_t b = words[i - 2];
    words[i] = words[i - 16] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ (a >> 3U)) + words[i - 7] +
               (std::rotr(b, 17) ^ std::rotr(b, 19) ^ (b >> 10U));
  }
  return words;
}

}  // namespace

void Sha256::Take(ByteView block) {
  const std::array<std::uint32_t, 64> words = Schedule(block);
  std::array<std::uint32_t, 8> s = state_;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::uint32_t big1 = std::rotr(s[4], 6) ^ std::rotr(s[4], 11) ^ std::rotr(s[4], 25);
    const std::uint32_t choice = (s[4] & s[5]) ^ (~s[4] & s[6]);
    const std::uint32_t first = s[7] + big1 + choice + kRounds[i] + words[i];
    const std::uint32_t big0 = std::rotr(s[0], 2) ^ std::rotr(s[0], 13) ^ std::rotr(s[0], 22);
    const std::uint32_t majority = (s[0] & s[1]) ^ (s[0] & s[2]) ^ (s[1] & s[2]);
    s = {first + big0 + majority, s[0], s[1], s[2], s[3] + first, s[4], s[5], s[6]};
  }
  for (std::size_t i = 0; i < s.size(); ++i) state_[i] += s[i];
}

void Sha256::Add(ByteView bytes) {
  length_ += bytes.size();
  while (!bytes.empty()) {
    const std::size_t count = std::min(bytes.size(), block_.size() - in_block_);
    std::copy_n(bytes.begin(), count, block_.begin() + static_cast<std::ptrdiff_t>(in_block_));
    bytes = bytes.subspan(count);
    in_block_ += count;
    if (in_block_ < block_.size()) return;
    Take(block_);
    in_block_ = 0;
  }
}

std::string Sha256::Finish() {
  const std::uint64_t bits = length_ * 8;
  constexpr std::uint8_t kEnd = 0x80;
  Add(ByteView(&kEnd, 1));
  constexpr std::uint8_t kZero = 0;
  while (in_block_ != block_.size() - kLengthSize) Add(ByteView(&kZero, 1));
  std::array<std::uint8_t, kLengthSize> length = {};
  StoreBigU32(length, 0, static_cast<std::uint32_t>(bits >> 32U));
  StoreBigU32(length, 4, static_cast<std::uint32_t>(bits));
  Add(length);
  std::string text;
  for (const std::uint32_t word : state_) text += fmt::format("{:08x}", word);
  return text;
}

std::string Sha256Of(ByteView bytes) {
  Sha256 hash;
  hash.Add(bytes);
  return hash.Finish();
}

}  // namespace zent::jet
