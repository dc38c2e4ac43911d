#include "platform/prefix/registry/RegistryIndex.h"

#include <algorithm>

#include "base/CaseFold.h"
#include "platform/prefix/registry/RegistryEscapes.h"
#include "platform/prefix/registry/RegistryLines.h"
#include "platform/prefix/registry/RegistryOrder.h"

namespace zent {
namespace {

/// What a child is found by: the four bytes of its parent's number, then its folded name.
std::string ChildKey(KeyId parent, std::string_view name) {
  std::string key;
  for (unsigned i = 0; i < 4; ++i) key.push_back(static_cast<char>((parent >> (8 * i)) & 0xFFU));
  return key + FoldName(name);
}

}  // namespace

SectionId RegistryIndex::AddSection(std::string_view file, std::size_t begin,
                                    std::string_view path) {
  const auto section = static_cast<SectionId>(sections_.size());
  const std::size_t path_at = static_cast<std::size_t>(path.data() - file.data()) - begin;
  sections_.push_back({begin, begin, kNoId});

  KeyId key = kRootKey;
  std::size_t depth = 0;
  std::size_t at = 0;
  while (const std::optional<std::string_view> name = NextKeyName(path, at)) {
    if (depth >= last_path_.size() || last_path_[depth].name != *name) {
      last_path_.resize(depth);
      key = Enter(key, *name, section, path_at + at - name->size());
      last_path_.push_back({std::string(*name), key});
    }
    key = last_path_[depth++].key;
  }

  keys_of_sections_.push_back(key);
  if (keys_[key].first_section == kNoId) {
    keys_[key].first_section = section;
  } else {
    sections_[keys_[key].last_section].next = section;
  }
  keys_[key].last_section = section;
  return section;
}

KeyId RegistryIndex::Enter(KeyId parent, std::string_view name, SectionId section,
                           std::size_t name_at) {
  const auto fresh = static_cast<KeyId>(keys_.size());
  const auto [found, is_new] = children_.try_emplace(ChildKey(parent, Unescape(name)), fresh);
  if (is_new) {
    keys_.push_back({.parent = parent,
                     .named_in = section,
                     .name_at = static_cast<std::uint32_t>(name_at),
                     .name_size = static_cast<std::uint32_t>(name.size())});
  }
  return found->second;
}

std::optional<KeyId> RegistryIndex::FindChild(KeyId parent, std::string_view name) const {
  const auto found = children_.find(ChildKey(parent, name));
  if (found == children_.end()) return std::nullopt;
  return found->second;
}

std::string_view RegistryIndex::NameOf(std::string_view file, KeyId key) const {
  if (key == kRootKey) return {};
  const Key& named = keys_[key];
  return file.substr(sections_[named.named_in].begin + named.name_at, named.name_size);
}

std::vector<bool> RegistryIndex::KeysBehind(std::string_view file, const KeyPath& path) const {
  // The existing keys on the way to `path`. A key is behind it when its ancestor right below that
  // way is; parents come first in the numbering, so one pass tells.
  std::vector<KeyId> way = {kRootKey};
  for (const std::string& name : path) {
    const std::optional<KeyId> child = FindChild(way.back(), name);
    if (!child) break;
    way.push_back(*child);
  }
  std::vector<bool> behind(keys_.size(), false);
  for (KeyId key = 1; key < keys_.size(); ++key) {
    const KeyId parent = keys_[key].parent;
    const auto fork = std::find(way.begin(), way.end(), parent);
    const auto depth = static_cast<std::size_t>(fork - way.begin());
    if (fork == way.end()) {
      behind[key] = behind[parent];
    } else if (depth == path.size()) {
      behind[key] = true;
    } else if (std::find(way.begin(), way.end(), key) == way.end()) {
      behind[key] = !ComesBefore(Unescape(NameOf(file, key)), path[depth]);
    }
  }
  return behind;
}

SectionId RegistryIndex::SectionBefore(std::string_view file, const KeyPath& path) const {
  const std::vector<bool> behind = KeysBehind(file, path);
  std::size_t place = file.size();
  for (SectionId i = 0; i < sections_.size(); ++i) {
    if (behind[keys_of_sections_[i]]) place = std::min(place, sections_[i].begin);
  }
  SectionId before = kNoId;
  for (SectionId i = 0; i < sections_.size(); ++i) {
    const bool later = before == kNoId || sections_[i].begin > sections_[before].begin;
    if (sections_[i].begin < place && later) before = i;
  }
  return before;
}

void RegistryIndex::Shift(std::size_t from, std::ptrdiff_t by) {
  for (RegistrySection& section : sections_) {
    if (section.begin < from) continue;
    section.begin += static_cast<std::size_t>(by);
    section.end += static_cast<std::size_t>(by);
  }
}

}  // namespace zent
