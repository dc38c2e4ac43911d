#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "base/CaseFold.h"
#include "base/Status.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {

/// A name or a position, counted from 0, as collections are asked by.
class ItemKey {
 public:
  ItemKey(std::string_view name) : key_(name) {}                      // implicit: Find("Id")
  ItemKey(const std::string& name) : key_(std::string_view(name)) {}  // implicit, as above
  ItemKey(const char* name) : key_(std::string_view(name)) {}         // implicit, as above
  ItemKey(std::size_t position) : key_(position) {}                   // implicit: Find(0U)

  const std::string_view* name() const { return std::get_if<std::string_view>(&key_); }
  /// Only when there is no name.
  std::size_t position() const { return *std::get_if<std::size_t>(&key_); }

 private:
  std::variant<std::string_view, std::size_t> key_;
};

/// The name of an item, which is a member or a function.
template <typename Item>
std::string_view NameOfItem(const Item& item) {
  if constexpr (requires { item.name(); }) {
    return item.name();
  } else {
    return item.name;
  }
}

/// Items by name, in any case, or by position: a copy of what was there when it was asked for.
template <typename Item>
class Collection {
 public:
  Collection() = default;
  explicit Collection(std::vector<Item> items) : items_(std::move(items)) {}

  std::size_t count() const { return items_.size(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

  /// The position of an item; kItemNotFound when there is none.
  Result<std::size_t> PositionOf(const ItemKey& key) const {
    for (std::size_t i = 0; i < items_.size(); ++i) {
      if (key.name() == nullptr ? i == key.position()
                                : SameName(NameOfItem(items_[i]), *key.name())) {
        return i;
      }
    }
    return JetError(kItemNotFound);
  }
  /// A copy of an item; kItemNotFound when there is none.
  Result<Item> Find(const ItemKey& key) const {
    const Result<std::size_t> at = PositionOf(key);
    if (!at.ok()) return at.error();
    return items_[at.value()];
  }
  bool Has(const ItemKey& key) const { return PositionOf(key).ok(); }
  const Item& operator[](std::size_t position) const { return items_[position]; }

 private:
  std::vector<Item> items_;
};

}  // namespace zent::jet
