#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/Status.h"
#include "jet/store/UsageMaps.h"

namespace zent::jet {

inline constexpr std::uint32_t kOneToOne = 0x1;
inline constexpr std::uint32_t kNotEnforced = 0x2;
inline constexpr std::uint32_t kCascadesUpdates = 0x100;
inline constexpr std::uint32_t kCascadesDeletes = 0x1000;
inline constexpr std::uint32_t kSetsNullOnDelete = 0x2000;
inline constexpr std::uint32_t kLeftJoin = 0x01000000;
inline constexpr std::uint32_t kRightJoin = 0x02000000;

/// A relationship between two tables, as MSysRelationships has it: one row there per column pair.
struct Relationship {
  std::string name = {};
  std::string table = {};                                         ///< the referring ("many") side
  std::string referenced_table = {};                              ///< the "one" side
  std::vector<std::pair<std::string, std::string>> columns = {};  ///< referring, referenced
  std::uint32_t flags = 0;

  bool enforced() const { return (flags & kNotEnforced) == 0; }
  bool cascades_updates() const { return (flags & kCascadesUpdates) != 0; }
  bool cascades_deletes() const { return (flags & kCascadesDeletes) != 0; }
  bool sets_null_on_delete() const { return (flags & kSetsNullOnDelete) != 0; }
  bool operator==(const Relationship&) const = default;
};

/// All relationships, in the order in which the file first names them; their columns in theirs.
/// Rows that contradict each other are damage.
Result<std::vector<Relationship>> ReadRelationships(UsageMaps& maps);

}  // namespace zent::jet
