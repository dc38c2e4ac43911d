#include "jet/format/PropertyBlob.h"

#include <algorithm>
#include <utility>

#include "base/CaseFold.h"

namespace zent::jet {
namespace {

template <typename Items>
auto FindProperty(Items& items, std::string_view name) {
  return std::find_if(items.begin(), items.end(),
                      [&](const Property& property) { return SameName(property.name, name); });
}

template <typename Items>
auto FindSet(Items& sets, std::string_view owner) {
  return std::find_if(sets.begin(), sets.end(), [&](const PropertySet& set) {
    return (set.kind == kObjectProperties) == owner.empty() && SameName(set.owner, owner);
  });
}

}  // namespace

const Property* PropertySet::Find(std::string_view name) const {
  const auto found = FindProperty(properties, name);
  return found == properties.end() ? nullptr : &*found;
}

void PropertySet::Set(Property property) {
  const auto found = FindProperty(properties, property.name);
  if (found == properties.end()) {
    properties.push_back(std::move(property));
    return;
  }
  property.name = found->name;  // the case in which it was first written
  *found = std::move(property);
}

bool PropertySet::Remove(std::string_view name) {
  const auto found = FindProperty(properties, name);
  if (found == properties.end()) return false;
  properties.erase(found);
  return true;
}

const PropertySet* PropertyBlob::Find(std::string_view column) const {
  const auto found = FindSet(sets, column);
  return found == sets.end() ? nullptr : &*found;
}

PropertySet& PropertyBlob::SetOf(std::string_view column) {
  const auto found = FindSet(sets, column);
  if (found != sets.end()) return *found;
  sets.push_back({.owner = std::string(column),
                  .kind = column.empty() ? kObjectProperties : kColumnProperties,
                  .properties = {}});
  return sets.back();
}

bool PropertyBlob::RenameColumn(std::string_view from, std::string_view to) {
  const auto found = FindSet(sets, from);
  if (from.empty() || found == sets.end()) return false;
  found->owner = to;
  return true;
}

bool PropertyBlob::DropColumn(std::string_view column) {
  const auto found = FindSet(sets, column);
  if (column.empty() || found == sets.end()) return false;
  sets.erase(found);
  return true;
}

}  // namespace zent::jet
