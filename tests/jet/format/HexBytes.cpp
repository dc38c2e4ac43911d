#include "HexBytes.h"

#include <fmt/format.h>

namespace zent::jet {

std::string Hex(std::string_view digits) {
  const auto value = [](char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; };
  std::string bytes;
  int high = -1;
  for (const char c : digits) {
    if (c == ' ') continue;
    if (high < 0) {
      high = value(c);
      continue;
    }
    bytes.push_back(static_cast<char>(high * 16 + value(c)));
    high = -1;
  }
  return bytes;
}

std::string ToHex(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    if (!text.empty()) text.push_back(' ');
    text += fmt::format("{:02X}", static_cast<unsigned char>(byte));
  }
  return text;
}

std::vector<std::uint8_t> HexVector(std::string_view digits) {
  const std::string bytes = Hex(digits);
  return {bytes.begin(), bytes.end()};
}

}  // namespace zent::jet
