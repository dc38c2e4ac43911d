#include "platform/prefix/registry/PrefixRegistry.h"

#include <fcntl.h>

#include <chrono>
#include <utility>

#include "platform/prefix/registry/RegistryEscapes.h"

namespace zent {
namespace {

constexpr std::chrono::seconds kLongestWait(30);
constexpr std::chrono::milliseconds kWaitStep(100);

}  // namespace

PrefixRegistry::PrefixRegistry(const std::string& machine, UniqueFd folder, Clock& clock,
                               FileTimeSource now, const std::string& temp_folder)
    : folder_(std::move(folder)),
      clock_(clock),
      now_(std::move(now)),
      wine_server_(machine, temp_folder),
      machine_(folder_.get(), "system.reg", machine + "/system.reg"),
      user_(folder_.get(), "user.reg", machine + "/user.reg"),
      default_user_(folder_.get(), "userdef.reg", machine + "/userdef.reg") {}

Result<std::unique_ptr<PrefixRegistry>> PrefixRegistry::Open(const std::string& machine,
                                                             Clock& clock, FileTimeSource now,
                                                             const std::string& temp_folder) {
  UniqueFd folder(::open(machine.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder.ok()) return StandardError(kPathNotFound, machine);
  std::unique_ptr<PrefixRegistry> registry(
      new PrefixRegistry(machine, std::move(folder), clock, std::move(now), temp_folder));
  if (Status loaded = registry->machine_.Load(); !loaded.ok()) return loaded.error();
  if (Status loaded = registry->user_.Load(); !loaded.ok()) return loaded.error();
  return registry;
}

Result<KeyHandle> PrefixRegistry::OpenKey(KeyHandle parent, std::string_view path) {
  Result<KeyPlace> place = Locate(parent, path);
  if (!place.ok()) return place.error();
  if (!Exists(place.value())) return StandardError(kFileNotFound);
  return Remember(std::move(place.value()));
}

Result<KeyHandle> PrefixRegistry::CreateKey(KeyHandle parent, std::string_view path) {
  Result<KeyPlace> place = Locate(parent, path);
  if (!place.ok()) return place.error();
  if (!Exists(place.value())) {
    if (!HasValidNames(place.value().path)) return StandardError(kPathFileAccess);
    // Said now, not at the first value: the caller asks for the key in order to write it.
    if (Status writable = CheckWritable(place.value().hive); !writable.ok()) {
      return writable.error();
    }
  }
  return Remember(std::move(place.value()));
}

Status PrefixRegistry::CloseKey(KeyHandle key) {
  if (key >= KeyHandle::ClassesRoot && key <= KeyHandle::Users) return {};
  const auto opened = opened_.find(key);
  if (opened == opened_.end()) return StandardError(kPathFileAccess);
  Status stored = StoreNewKey(opened->second);
  opened_.erase(opened);
  return stored;
}

Result<RegistryValue> PrefixRegistry::QueryValue(KeyHandle key, std::string_view name) {
  const Result<KeyPlace> place = Locate(key, {});
  if (!place.ok()) return place.error();
  if (!IsStored(place.value()) || place.value().hive == Hive::Users) {
    return StandardError(kFileNotFound);
  }
  const RegistryFile& file = StoreOf(place.value().hive).file();
  std::optional<RegistryValue> value =
      file.FindValue(*file.FindKey(place.value().path), WellFormedText(name));
  if (!value) return StandardError(kFileNotFound);
  return std::move(*value);
}

Status PrefixRegistry::SetText(KeyHandle key, std::string_view name, std::string_view text) {
  const Result<KeyPlace> place = Locate(key, {});
  if (!place.ok()) return place.error();
  const auto opened = opened_.find(key);
  const bool may_be_new = opened == opened_.end() || opened->second.is_new;
  const KeyPath& path = place.value().path;
  Status stored = Store(place.value().hive, [&](const RegistryFile& file) -> Result<RegistryEdit> {
    // Another program has removed the key since it was opened.
    if (!may_be_new && !file.FindKey(path)) return StandardError(kFileNotFound);
    return file.EditText(path, WellFormedText(name), WellFormedText(text), now_());
  });
  if (stored.ok() && opened != opened_.end()) opened->second.is_new = false;
  return stored;
}

Status PrefixRegistry::HandOver() {
  for (auto& [handle, opened] : opened_) {
    if (Status stored = StoreNewKey(opened); !stored.ok()) return stored;
  }
  handed_over_ = true;
  return {};
}

Status PrefixRegistry::TakeBack() {
  if (!handed_over_) return {};
  const std::chrono::milliseconds start = clock_.Ticks();
  while (wine_server_.IsRunning()) {
    if (clock_.Ticks() - start >= kLongestWait) return StandardError(kPermissionDenied);
    clock_.Sleep(kWaitStep);
  }
  if (Status read = machine_.Load(); !read.ok()) return read;
  if (Status read = user_.Load(); !read.ok()) return read;
  if (default_user_.loaded()) {
    if (Status read = default_user_.Load(); !read.ok()) return read;
  }
  handed_over_ = false;
  return {};
}

Status PrefixRegistry::Store(Hive hive, const RegistryEditor& editor) {
  if (Status writable = CheckWritable(hive); !writable.ok()) return writable;
  return StoreOf(hive).Save(editor);
}

Status PrefixRegistry::StoreNewKey(OpenedKey& key) {
  if (!key.is_new) return {};
  Status stored = Store(key.place.hive, [&](const RegistryFile& file) {
    return Result<RegistryEdit>(file.EditNewKey(key.place.path, now_()));
  });
  if (stored.ok()) key.is_new = false;
  return stored;
}

Status PrefixRegistry::CheckWritable(Hive hive) {
  if (hive == Hive::Users || hive == Hive::DefaultUser) return StandardError(kPathFileAccess);
  if (wine_server_.IsRunning()) return StandardError(kPermissionDenied);
  return StoreOf(hive).CheckWritable();
}

KeyHandle PrefixRegistry::Remember(KeyPlace place) {
  const auto handle = static_cast<KeyHandle>(++last_handle_);
  const bool is_new = !IsStored(place);
  opened_[handle] = {std::move(place), is_new};
  return handle;
}

}  // namespace zent
