#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "jet/storage/Pager.h"
#include "jet/tools/FaultLog.h"

namespace zent::jet {

/// Which page of a file is used by what, gathered from all that names pages. A page has one user; a
/// second one is a fault.
class PageUse {
 public:
  using User = std::uint32_t;

  PageUse(PageNumber page_count, FaultLog& faults) : users_(page_count), faults_(faults) {}

  /// A new user, as faults name it: "table Orders, rows".
  User Add(std::string name);
  /// Pages of usage maps, which tables share.
  User map_pages() const { return kMapPages; }

  /// Notes that `user` has `page`. False when there is no such page or it has been noted already;
  /// that is a fault unless `again` is set and it was the same user.
  bool Claim(PageNumber page, User user, bool again = false);
  /// Notes that a usage map is at `map`; false, and a fault, when another one is.
  bool ClaimMap(RowPointer map, User user);

  PageNumber page_count() const { return static_cast<PageNumber>(users_.size()); }
  bool IsUsed(PageNumber page) const { return users_[page] != 0; }
  const std::string& NameOf(PageNumber page) const { return names_[users_[page]]; }
  bool HasMap(RowPointer map) const { return maps_.contains(map.packed()); }

 private:
  static constexpr User kMapPages = 1;

  std::vector<User> users_;  ///< by page; 0: none so far
  std::vector<std::string> names_ = {"nothing", "usage maps"};
  std::set<std::uint32_t> maps_;
  FaultLog& faults_;
};

}  // namespace zent::jet
