#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// Numbers in bytes. Nothing here checks bounds: who calls has checked the length with Fits.
namespace zent::jet {

using ByteView = std::span<const std::uint8_t>;
using MutableBytes = std::span<std::uint8_t>;

/// True when `count` bytes from `at` on lie within `bytes`.
constexpr bool Fits(ByteView bytes, std::size_t at, std::size_t count) {
  return at <= bytes.size() && count <= bytes.size() - at;
}

constexpr std::uint16_t LoadU16(ByteView bytes, std::size_t at) {
  return static_cast<std::uint16_t>(bytes[at] | (bytes[at + 1] << 8U));
}

constexpr std::uint32_t LoadU24(ByteView bytes, std::size_t at) {
  return LoadU16(bytes, at) | (static_cast<std::uint32_t>(bytes[at + 2]) << 16U);
}

constexpr std::uint32_t LoadU32(ByteView bytes, std::size_t at) {
  return LoadU24(bytes, at) | (static_cast<std::uint32_t>(bytes[at + 3]) << 24U);
}

constexpr std::uint64_t LoadU64(ByteView bytes, std::size_t at) {
  return LoadU32(bytes, at) | (static_cast<std::uint64_t>(LoadU32(bytes, at + 4)) << 32U);
}

/// Three bytes, the highest first, as row pointers in index entries have it.
constexpr std::uint32_t LoadBigU24(ByteView bytes, std::size_t at) {
  return (static_cast<std::uint32_t>(bytes[at]) << 16U) |
         (static_cast<std::uint32_t>(bytes[at + 1]) << 8U) | bytes[at + 2];
}

constexpr std::uint32_t LoadBigU32(ByteView bytes, std::size_t at) {
  return (static_cast<std::uint32_t>(bytes[at]) << 24U) | LoadBigU24(bytes, at + 1);
}

constexpr void StoreU16(MutableBytes bytes, std::size_t at, std::uint32_t value) {
  bytes[at] = static_cast<std::uint8_t>(value);
  bytes[at + 1] = static_cast<std::uint8_t>(value >> 8U);
}

constexpr void StoreU24(MutableBytes bytes, std::size_t at, std::uint32_t value) {
  StoreU16(bytes, at, value);
  bytes[at + 2] = static_cast<std::uint8_t>(value >> 16U);
}

constexpr void StoreU32(MutableBytes bytes, std::size_t at, std::uint32_t value) {
  StoreU24(bytes, at, value);
  bytes[at + 3] = static_cast<std::uint8_t>(value >> 24U);
}

constexpr void StoreU64(MutableBytes bytes, std::size_t at, std::uint64_t value) {
  StoreU32(bytes, at, static_cast<std::uint32_t>(value));
  StoreU32(bytes, at + 4, static_cast<std::uint32_t>(value >> 32U));
}

constexpr void StoreBigU24(MutableBytes bytes, std::size_t at, std::uint32_t value) {
  bytes[at] = static_cast<std::uint8_t>(value >> 16U);
  bytes[at + 1] = static_cast<std::uint8_t>(value >> 8U);
  bytes[at + 2] = static_cast<std::uint8_t>(value);
}

constexpr void StoreBigU32(MutableBytes bytes, std::size_t at, std::uint32_t value) {
  bytes[at] = static_cast<std::uint8_t>(value >> 24U);
  StoreBigU24(bytes, at + 1, value);
}

/// The bytes of a string, and the string that bytes are.
inline ByteView AsBytes(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}
inline std::string_view AsText(ByteView bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace zent::jet
