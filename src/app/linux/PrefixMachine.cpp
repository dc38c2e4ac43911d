#include "app/linux/PrefixMachine.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <utility>

#include "platform/posix/PosixErrors.h"
#include "platform/posix/ReplaceFile.h"
#include "platform/prefix/registry/FileTime.h"
#include "platform/prefix/registry/WineServer.h"

namespace zent {

Result<std::unique_ptr<PrefixMachine>> PrefixMachine::Open(const Options& options) {
  std::unique_ptr<PrefixMachine> machine(new PrefixMachine());
  const std::string folder = options.folder.string();
  if (const Status locked = machine->Lock(options.folder); !locked.ok()) return locked.error();
  if (WineServer(folder).IsRunning()) {
    return StandardError(kPermissionDenied, "Wine is running on " + folder);
  }
  // What a killed run left half-written beside the registry files.
  RemoveLeftSiblings(machine->lock_.get());

  Result<std::unique_ptr<PrefixRegistry>> registry =
      PrefixRegistry::Open(folder, machine->clock_, SystemFileTime);
  if (!registry.ok()) return registry.error();
  machine->registry_ = std::move(registry.value());

  Result<Drives> drives = Drives::Open(options.folder, options.follow_profile_links);
  if (!drives.ok()) return drives.error();
  machine->drives_.emplace(std::move(drives.value()));
  Result<std::string> package = machine->drives_->AddPackageFolder(options.package);
  if (!package.ok()) return StandardError(kDeviceUnavailable, options.package.string());
  machine->package_ = std::move(package.value());

  machine->BuildAdapters(options);
  return machine;
}

Status PrefixMachine::Lock(const std::filesystem::path& folder) {
  lock_ = UniqueFd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!lock_.ok()) {
    const bool missing = errno == ENOENT || errno == ENOTDIR;
    return StandardError(missing ? kPathNotFound : ErrorOfErrno(errno).number, folder.string());
  }
  // On the folder itself: such a lock leaves no file behind and ends with the process.
  if (::flock(lock_.get(), LOCK_EX | LOCK_NB) == 0) return {};
  if (errno != EWOULDBLOCK) return ErrorOfErrno(errno);
  return StandardError(kPermissionDenied, "another run is at work on " + folder.string());
}

void PrefixMachine::BuildAdapters(const Options& options) {
  files_.emplace(*drives_, package_);
  databases_.emplace(*files_);
  system_.emplace(*registry_);
  settings_.emplace(*files_, *system_);
  programs_.emplace(*files_);
  wine_.emplace(
      options.path_list, options.folder, [this] { return registry_->HandOver(); },
      kWineLoaderOfDebian,
      [server = WineServer(options.folder.string())] { return server.IsRunning(); });
  processes_.emplace(*programs_, *wine_);
  shell_.emplace(options.path_list, *wine_, options.windows);
  links_.emplace(*files_);
  versions_.emplace(*files_);
  platform_.emplace(Platform{*files_, *registry_, *settings_, *system_, *processes_, *shell_,
                             clock_, *versions_, *links_});
}

}  // namespace zent
