#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "jet/format/Bytes.h"

namespace zent::jet {

/// SHA-256 (FIPS 180-4) of bytes that come in pieces.
class Sha256 {
 public:
  void Add(ByteView bytes);
  /// 64 small hexadecimal digits. Nothing may be added afterwards.
  std::string Finish();

 private:
  void Take(ByteView block);

  std::array<std::uint32_t, 8> state_ = {0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                                         0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};
  std::array<std::uint8_t, 64> block_ = {};
  std::size_t in_block_ = 0;
  std::uint64_t length_ = 0;
};

/// SHA-256 of `bytes`, as hexadecimal digits.
std::string Sha256Of(ByteView bytes);

}  // namespace zent::jet
