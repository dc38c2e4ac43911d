#include "jet/format/Rc4.h"

#include <array>
#include <numeric>
#include <utility>

namespace zent::jet {

void ApplyRc4(ByteView key, MutableBytes bytes) {
  if (key.empty()) return;
  std::array<std::uint8_t, 256> state;
  std::iota(state.begin(), state.end(), std::uint8_t{0});
  std::uint8_t j = 0;
  for (std::size_t i = 0; i < state.size(); ++i) {
    j = static_cast<std::uint8_t>(j + state[i] + key[i % key.size()]);
    std::swap(state[i], state[j]);
  }

  std::uint8_t i = 0;
  j = 0;
  for (std::uint8_t& byte : bytes) {
    i = static_cast<std::uint8_t>(i + 1);
    j = static_cast<std::uint8_t>(j + state[i]);
    std::swap(state[i], state[j]);
    byte ^= state[static_cast<std::uint8_t>(state[i] + state[j])];
  }
}

void CryptPage(std::uint32_t database_key, PageNumber number, MutableBytes page) {
  if (database_key == 0 || number == 0) return;
  std::array<std::uint8_t, 4> key;
  StoreU32(key, 0, database_key ^ number);
  ApplyRc4(key, page);
}

}  // namespace zent::jet
