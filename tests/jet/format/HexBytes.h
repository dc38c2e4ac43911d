#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Bytes as they are written in tables of tests: pairs of hex digits, blanks where they help.
namespace zent::jet {

std::string Hex(std::string_view digits);
std::string ToHex(std::string_view bytes);
std::vector<std::uint8_t> HexVector(std::string_view digits);

}  // namespace zent::jet
