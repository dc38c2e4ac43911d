#include "jet/tools/PageUse.h"

#include <fmt/format.h>

namespace zent::jet {

PageUse::User PageUse::Add(std::string name) {
  names_.push_back(std::move(name));
  return static_cast<User>(names_.size() - 1);
}

bool PageUse::Claim(PageNumber page, User user, bool again) {
  if (page >= users_.size()) {
    faults_.Add(names_[user], fmt::format("page {} lies beyond the end of the file", page));
    return false;
  }
  if (users_[page] == 0) {
    users_[page] = user;
    return true;
  }
  if (!again || users_[page] != user) {
    faults_.Add(names_[user], fmt::format("page {} is also used by {}", page, NameOf(page)));
  }
  return false;
}

bool PageUse::ClaimMap(RowPointer map, User user) {
  if (maps_.insert(map.packed()).second) return true;
  faults_.Add(names_[user],
              fmt::format("its usage map, page {} row {}, is also another's", map.page, map.row));
  return false;
}

}  // namespace zent::jet
