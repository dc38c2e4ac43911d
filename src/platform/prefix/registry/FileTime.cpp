#include "platform/prefix/registry/FileTime.h"

#include <chrono>
#include <ratio>

namespace zent {

std::uint64_t SystemFileTime() {
  using Ticks = std::chrono::duration<std::uint64_t, std::ratio<1, 10'000'000>>;
  constexpr std::uint64_t kTicksTo1970 = 116'444'736'000'000'000;
  const auto since_1970 = std::chrono::system_clock::now().time_since_epoch();
  return kTicksTo1970 + std::chrono::duration_cast<Ticks>(since_1970).count();
}

}  // namespace zent
