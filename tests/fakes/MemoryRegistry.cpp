#include "fakes/MemoryRegistry.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/CaseFold.h"
#include "base/Text.h"

namespace zent::testing {
namespace {

struct Root {
  KeyHandle key;
  std::string_view name;
};

constexpr std::array kRoots = {
    // The classes are those of the machine.
    Root{KeyHandle::ClassesRoot, R"(HKLM\Software\Classes)"},
    Root{KeyHandle::CurrentUser, "HKCU"},
    Root{KeyHandle::LocalMachine, "HKLM"},
    Root{KeyHandle::Users, "HKU"},
};

const Root* FindRoot(KeyHandle key) {
  const auto* const found =
      std::find_if(kRoots.begin(), kRoots.end(), [&](const Root& root) { return root.key == key; });
  return found == kRoots.end() ? nullptr : found;
}

bool IsRootPath(std::string_view path) {
  return path.find('\\') == std::string_view::npos || path == kRoots[0].name;
}

constexpr std::size_t kLongestName = 255;  // characters of a key's name

bool HasTooLongName(std::string_view path) {
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('\\'), path.size());
    if (CountCharacters(path.substr(0, end)) > kLongestName) return true;
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return false;
}

/// `base` with the levels of `path` behind it, empty levels left out.
std::string Join(std::string base, std::string_view path) {
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('\\'), path.size());
    if (end > 0) base += '\\' + std::string(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return base;
}

}  // namespace

void MemoryRegistry::PutKey(KeyHandle root, std::string_view path) {
  MakeLevels(Join(PathOf(root).value_or("HKLM"), path));
}

void MemoryRegistry::PutValue(KeyHandle root, std::string_view path, std::string_view name,
                              RegistryValue value) {
  const std::string key = Join(PathOf(root).value_or("HKLM"), path);
  MakeLevels(key);
  keys_[FoldName(key)].insert_or_assign(FoldName(name), std::move(value));
}

void MemoryRegistry::PutText(KeyHandle root, std::string_view path, std::string_view name,
                             std::string_view text) {
  PutValue(root, path, name, {kRegSz, std::string(text) + '\0'});
}

std::optional<RegistryValue> MemoryRegistry::Value(KeyHandle root, std::string_view path,
                                                   std::string_view name) const {
  const auto key = keys_.find(FoldName(Join(PathOf(root).value_or(""), path)));
  if (key == keys_.end()) return std::nullopt;
  const auto value = key->second.find(FoldName(name));
  if (value == key->second.end()) return std::nullopt;
  RegistryValue found = value->second;
  if (found.type == kRegSz && found.data.ends_with('\0')) found.data.pop_back();
  return found;
}

bool MemoryRegistry::KeyExists(KeyHandle root, std::string_view path) const {
  const std::string full = Join(PathOf(root).value_or(""), path);
  return IsRootPath(full) || keys_.contains(FoldName(full));
}

Result<KeyHandle> MemoryRegistry::OpenKey(KeyHandle parent, std::string_view path) {
  const Result<std::string> full = PathBelow(parent, path);
  Status fault = log_.Read("OpenKey " + full.value_or(std::string(path)));
  if (!fault.ok()) return fault.error();
  if (!full.ok()) return full.error();
  if (!IsRootPath(full.value()) && !keys_.contains(FoldName(full.value()))) {
    return StandardError(kFileNotFound);
  }
  return Open(full.value());
}

Result<KeyHandle> MemoryRegistry::CreateKey(KeyHandle parent, std::string_view path) {
  const Result<std::string> full = PathBelow(parent, path);
  Status fault = log_.Change("CreateKey " + full.value_or(std::string(path)));
  if (!fault.ok()) return fault.error();
  if (!full.ok()) return full.error();
  MakeLevels(full.value());
  return Open(full.value());
}

Status MemoryRegistry::CloseKey(KeyHandle key) {
  const std::optional<std::string> path = PathOf(key);
  Status fault = log_.Read("CloseKey " + path.value_or("?"));
  if (!path) return StandardError(kPathFileAccess);
  open_keys_.erase(key);  // a root is not among them
  return fault;
}

Result<RegistryValue> MemoryRegistry::QueryValue(KeyHandle key, std::string_view name) {
  const std::optional<std::string> path = PathOf(key);
  Status fault = log_.Read("QueryValue " + path.value_or("?") + '|' + std::string(name));
  if (!fault.ok()) return fault.error();
  if (!path) return StandardError(kPathFileAccess);
  const auto values = keys_.find(FoldName(*path));
  if (values == keys_.end()) return StandardError(kFileNotFound);
  const auto value = values->second.find(FoldName(name));
  if (value == values->second.end()) return StandardError(kFileNotFound);
  return value->second;
}

Status MemoryRegistry::SetText(KeyHandle key, std::string_view name, std::string_view text) {
  const std::optional<std::string> path = PathOf(key);
  Status fault = log_.Change("SetText " + path.value_or("?") + '|' + std::string(name));
  if (!fault.ok()) return fault;
  if (!path) return StandardError(kPathFileAccess);
  keys_[FoldName(*path)].insert_or_assign(FoldName(name),
                                          RegistryValue{kRegSz, std::string(text) + '\0'});
  return {};
}

std::optional<std::string> MemoryRegistry::PathOf(KeyHandle key) const {
  if (const Root* const root = FindRoot(key)) return std::string(root->name);
  const auto found = open_keys_.find(key);
  if (found == open_keys_.end()) return std::nullopt;
  return found->second;
}

Result<std::string> MemoryRegistry::PathBelow(KeyHandle parent, std::string_view path) const {
  const std::optional<std::string> base = PathOf(parent);
  if (!base || path.starts_with('\\') || HasTooLongName(path)) {
    return StandardError(kPathFileAccess);
  }
  return Join(*base, path);
}

KeyHandle MemoryRegistry::Open(const std::string& path) {
  // The roots keep their own handles, however they were reached.
  for (const Root& root : kRoots) {
    if (root.name == path) return root.key;
  }
  const KeyHandle handle{++last_handle_};
  open_keys_.emplace(handle, path);
  return handle;
}

void MemoryRegistry::MakeLevels(const std::string& path) {
  for (std::size_t at = path.find('\\'); at != std::string::npos;) {
    at = path.find('\\', at + 1);
    keys_.try_emplace(FoldName(path.substr(0, at)));
  }
}

}  // namespace zent::testing
