// Where keys are: from a handle and a path to a place in one of the files.
#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "base/CaseFold.h"
#include "base/Utf.h"
#include "platform/prefix/registry/PrefixRegistry.h"

namespace zent {
namespace {

/// Links that lead on to links, before they count as leading nowhere.
constexpr int kMostLinks = 32;
constexpr std::string_view kLinkValue = "SymbolicLinkValue";
constexpr std::uint32_t kRegLink = 6;

/// The names of a link's target "\Registry\Machine\..."; empty when the link has no such target.
KeyPath LinkTarget(const RegistryFile& file, KeyId key) {
  const std::optional<RegistryValue> link = file.FindValue(key, kLinkValue);
  if (!link || link->type != kRegLink) return {};
  const std::string target = FromUtf16Bytes(link->data);
  if (target.empty() || target.front() != '\\') return {};
  Result<KeyPath> names = ParseKeyPath(std::string_view(target).substr(1));
  if (!names.ok() || names.value().size() < 2) return {};
  return SameName(names.value().front(), "Registry") ? std::move(names.value()) : KeyPath();
}

/// The first key on the way that is a link; its depth is the length of the path to it.
struct LinkOnWay {
  KeyId key = kRootKey;
  std::size_t depth = 0;
};

std::optional<LinkOnWay> FindLink(const RegistryFile& file, const KeyPath& path) {
  LinkOnWay way;
  for (const std::string& name : path) {
    const std::optional<KeyId> child = file.FindChild(way.key, name);
    if (!child) return std::nullopt;
    way = {*child, way.depth + 1};
    if (file.IsLink(way.key)) return way;
  }
  return std::nullopt;
}

KeyPath Tail(const KeyPath& path, std::size_t from) {
  return {path.begin() + static_cast<std::ptrdiff_t>(from), path.end()};
}

void Append(KeyPath& path, const KeyPath& more) {
  path.insert(path.end(), more.begin(), more.end());
}

}  // namespace

Result<PrefixRegistry::KeyPlace> PrefixRegistry::Locate(KeyHandle parent, std::string_view path) {
  if (Status taken = TakeBack(); !taken.ok()) return taken.error();
  const Result<KeyPath> names = ParseKeyPath(path);
  if (!names.ok()) return names.error();
  KeyPlace place;
  if (parent == KeyHandle::ClassesRoot) {
    place = {Hive::Machine, {"Software", "Classes"}};
  } else if (parent == KeyHandle::CurrentUser) {
    place = {Hive::User, {}};
  } else if (parent == KeyHandle::LocalMachine) {
    place = {Hive::Machine, {}};
  } else if (const auto opened = opened_.find(parent); opened != opened_.end()) {
    place = opened->second.place;
  } else if (parent != KeyHandle::Users) {
    return StandardError(kPathFileAccess);
  }
  Append(place.path, names.value());
  return FollowLinks(std::move(place));
}

Result<PrefixRegistry::KeyPlace> PrefixRegistry::FollowLinks(KeyPlace place) {
  for (int links = 0; links < kMostLinks; ++links) {
    Result<KeyPlace> entered = EnterUsers(std::move(place));
    if (!entered.ok() || entered.value().hive == Hive::Users) return entered;
    place = std::move(entered.value());
    const RegistryFile& file = StoreOf(place.hive).file();
    const std::optional<LinkOnWay> link = FindLink(file, place.path);
    if (!link) return place;

    const KeyPath target = LinkTarget(file, link->key);
    if (target.empty()) break;
    KeyPlace next;
    if (SameName(target[1], "Machine")) {
      next.hive = Hive::Machine;
    } else if (!SameName(target[1], "User")) {
      break;
    }
    next.path = Tail(target, 2);
    Append(next.path, Tail(place.path, link->depth));
    place = std::move(next);
  }
  return StandardError(kFileNotFound);
}

Result<PrefixRegistry::KeyPlace> PrefixRegistry::EnterUsers(KeyPlace place) {
  if (place.hive != Hive::Users || place.path.empty()) return place;
  if (SameName(place.path.front(), user_.file().RootName())) {
    return KeyPlace{Hive::User, Tail(place.path, 1)};
  }
  if (!SameName(place.path.front(), ".Default")) return place;
  if (!default_user_.loaded()) {
    const Status loaded = default_user_.Load();
    if (loaded.number() == kFileNotFound) return place;
    if (!loaded.ok()) return loaded.error();
  }
  return KeyPlace{Hive::DefaultUser, Tail(place.path, 1)};
}

RegistryStore& PrefixRegistry::StoreOf(Hive hive) {
  if (hive == Hive::Machine) return machine_;
  return hive == Hive::User ? user_ : default_user_;
}

bool PrefixRegistry::IsStored(const KeyPlace& place) {
  if (place.hive == Hive::Users) return place.path.empty();
  return StoreOf(place.hive).file().FindKey(place.path).has_value();
}

bool PrefixRegistry::Exists(const KeyPlace& place) {
  if (IsStored(place)) return true;
  return std::any_of(opened_.begin(), opened_.end(), [&](const auto& entry) {
    const OpenedKey& opened = entry.second;
    return opened.is_new && opened.place.hive == place.hive &&
           IsAtOrBelow(opened.place.path, place.path);
  });
}

}  // namespace zent
