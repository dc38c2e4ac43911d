#include "platform/prefix/files/FileUse.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <optional>
#include <sstream>

#include "platform/posix/FolderReader.h"
#include "platform/posix/UniqueFd.h"

namespace zent {
namespace {

enum class Lease { Granted, InUse, Refused };

/// Asks for a write lease, which is granted only while nobody else has the file open, and gives it
/// back.
Lease AskForLease(const UniqueFd& fd) {
  // Who opens the file meanwhile makes the kernel signal us: by default with SIGIO, which kills.
  // SIGURG is ignored unless asked for.
  ::fcntl(fd.get(), F_SETSIG, SIGURG);
  if (::fcntl(fd.get(), F_SETLEASE, F_WRLCK) == 0) {
    ::fcntl(fd.get(), F_SETLEASE, F_UNLCK);
    return Lease::Granted;
  }
  const bool in_use = errno == EAGAIN || errno == EBUSY || errno == ETXTBSY;
  return in_use ? Lease::InUse : Lease::Refused;
}

bool IsRunningProgram(int folder_fd, const std::string& name) {
  const UniqueFd fd(
      ::openat(folder_fd, name.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  return !fd.ok() && errno == ETXTBSY;
}

/// True when descriptor `number` of a process is open on the file, rather than a mere reference to
/// its name (O_PATH).
bool IsDescriptorOf(const std::string& process, const std::string& number,
                    const struct stat& file) {
  struct stat info = {};
  if (::stat(fmt::format("{}/fd/{}", process, number).c_str(), &info) != 0) return false;
  if (info.st_dev != file.st_dev || info.st_ino != file.st_ino) return false;
  std::ifstream about(fmt::format("{}/fdinfo/{}", process, number));
  for (std::string word; about >> word;) {
    unsigned flags = 0;
    if (word == "flags:" && about >> std::oct >> flags) return (flags & unsigned{O_PATH}) == 0;
  }
  return true;
}

bool HasOpen(const std::string& process, const struct stat& file) {
  const UniqueFd descriptors(::open((process + "/fd").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!descriptors.ok()) return false;
  Result<FolderReader> numbers = FolderReader::Open(descriptors.get());
  if (!numbers.ok()) return false;
  while (const std::optional<std::string> number = numbers.value().Next()) {
    if (IsDescriptorOf(process, *number, file)) return true;
  }
  return false;
}

/// Looks the file up in the memory map of a process: "ADDRESSES PERMISSIONS OFFSET DEVICE INODE".
bool HasMapped(const std::string& process, const struct stat& file) {
  const std::string device =
      fmt::format("{:02x}:{:02x}", ::major(file.st_dev), ::minor(file.st_dev));
  std::ifstream map(process + "/maps");
  for (std::string line; std::getline(map, line);) {
    std::istringstream fields(line);
    std::string skipped;
    std::string on_device;
    ino_t inode = 0;
    fields >> skipped >> skipped >> skipped >> on_device >> inode;
    if (on_device == device && inode == file.st_ino) return true;
  }
  return false;
}

/// How a file that somebody holds is held. A holder whose processes we may not look into counts as
/// one that has it open.
FileUse HowHeld(const struct stat& file) {
  const UniqueFd proc(::open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!proc.ok()) return FileUse::Open;
  Result<FolderReader> processes = FolderReader::Open(proc.get());
  if (!processes.ok()) return FileUse::Open;
  bool loaded = false;
  while (const std::optional<std::string> name = processes.value().Next()) {
    if (name->find_first_not_of("0123456789") != std::string::npos) continue;
    const std::string process = "/proc/" + *name;
    if (HasOpen(process, file)) return FileUse::Open;
    loaded = loaded || HasMapped(process, file);
  }
  return loaded ? FileUse::Loaded : FileUse::Open;
}

}  // namespace

FileUse UseOf(int folder_fd, const std::string& name) {
  struct stat file = {};
  {
    const UniqueFd fd(
        ::openat(folder_fd, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!fd.ok()) return errno == EWOULDBLOCK ? FileUse::Open : FileUse::None;
    if (::fstat(fd.get(), &file) != 0 || !S_ISREG(file.st_mode)) return FileUse::None;
    const Lease lease = AskForLease(fd);
    if (lease == Lease::Granted) return FileUse::None;
    if (lease == Lease::Refused) {
      return IsRunningProgram(folder_fd, name) ? FileUse::Loaded : FileUse::None;
    }
  }
  return HowHeld(file);
}

}  // namespace zent
