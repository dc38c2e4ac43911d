#include "app/linux/PrefixStorage.h"

#include <string>

namespace zent {

Result<std::unique_ptr<jet::StoredFile>> PrefixStorage::Open(std::string_view path,
                                                             jet::Sharing sharing) {
  const Result<std::filesystem::path> host = files_.HostPath(path);
  if (!host.ok()) return host.error();
  if (sharing != jet::Sharing::ReadOnly) {
    const Result<std::uint32_t> attributes = files_.Attributes(path);
    if (!attributes.ok()) return attributes.error();
    if ((attributes.value() & kAttributeReadOnly) != 0) return StandardError(kPathFileAccess);
  }
  return disk_.Open(host.value().string(), sharing);
}

Result<std::unique_ptr<jet::StoredFile>> PrefixStorage::Create(std::string_view path,
                                                               jet::Sharing sharing,
                                                               std::string_view like) {
  const Result<std::filesystem::path> host = files_.HostTarget(path);
  if (!host.ok()) return host.error();
  const Result<std::filesystem::path> pattern = files_.HostPath(like);
  return disk_.Create(host.value().string(), sharing,
                      pattern.ok() && !like.empty() ? pattern.value().string() : "");
}

Status PrefixStorage::Delete(std::string_view path) {
  const Result<std::filesystem::path> host = files_.HostTarget(path);
  if (!host.ok()) return host.error();
  return disk_.Delete(host.value().string());
}

Result<bool> PrefixStorage::Exists(std::string_view path) {
  const Result<std::filesystem::path> host = files_.HostPath(path);
  if (!host.ok()) {
    const bool missing = host.number() == kFileNotFound || host.number() == kPathNotFound;
    if (missing) return false;
    return host.error();
  }
  return disk_.Exists(host.value().string());
}

Status PrefixStorage::Rename(std::string_view path, std::string_view new_path) {
  const Result<std::filesystem::path> host = files_.HostTarget(path);
  if (!host.ok()) return host.error();
  const Result<std::filesystem::path> new_host = files_.HostTarget(new_path);
  if (!new_host.ok()) return new_host.error();
  return disk_.Rename(host.value().string(), new_host.value().string());
}

Status PrefixStorage::FlushFolder(std::string_view path) {
  const Result<std::filesystem::path> host = files_.HostTarget(path);
  if (!host.ok()) return host.error();
  return disk_.FlushFolder(host.value().string());
}

}  // namespace zent
