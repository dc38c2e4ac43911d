#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Numbers in the byte order of program files. The caller has checked that the bytes are there.
namespace zent {

inline std::uint16_t U16At(std::string_view bytes, std::size_t at) {
  const auto low = static_cast<unsigned char>(bytes[at]);
  const auto high = static_cast<unsigned char>(bytes[at + 1]);
  return static_cast<std::uint16_t>(low | high << 8U);
}

inline std::uint32_t U32At(std::string_view bytes, std::size_t at) {
  return U16At(bytes, at) | static_cast<std::uint32_t>(U16At(bytes, at + 2)) << 16U;
}

}  // namespace zent
