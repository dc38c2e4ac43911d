#pragma once

#include <cstdint>

namespace zent::jet {

/// How text is ordered. Jet 3 files have a code page where Jet 4 has a version.
struct Collation {
  std::uint16_t lcid = 1033;
  std::uint8_t version = 0;
  bool operator==(const Collation&) const = default;
};

/// The one collation whose keys can be computed: General Legacy (in Jet 3: General).
inline constexpr Collation kGeneralLegacy = {};

}  // namespace zent::jet
