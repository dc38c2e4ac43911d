#include "platform/prefix/files/PathWalk.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <utility>
#include <vector>

#include "base/CaseFold.h"
#include "base/Text.h"
#include "platform/posix/FolderReader.h"
#include "platform/posix/PosixErrors.h"

namespace zent {
namespace {

constexpr int kMaxLinks = 40;

constexpr std::array<std::string_view, 6> kProfileLinks = {"DESKTOP", "DOCUMENTS", "DOWNLOADS",
                                                           "MUSIC",   "PICTURES",  "VIDEOS"};

bool IsProfileLink(std::string_view name) {
  const std::string folded = FoldName(name);
  return folded.starts_with("MY ") ||
         std::find(kProfileLinks.begin(), kProfileLinks.end(), folded) != kProfileLinks.end();
}

UniqueFd Duplicate(const UniqueFd& fd) { return UniqueFd(::fcntl(fd.get(), F_DUPFD_CLOEXEC, 0)); }

UniqueFd OpenEntry(const UniqueFd& folder, const std::string& name) {
  return UniqueFd(::openat(folder.get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
}

/// True when the folded names must differ: by a letter of ASCII behind letters of ASCII. It spares
/// most names of a folder the folding.
bool DifferAtOnce(std::string_view a, std::string_view b) {
  const std::size_t both = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < both; ++i) {
    const auto of_a = static_cast<unsigned char>(a[i]);
    const auto of_b = static_cast<unsigned char>(b[i]);
    if (of_a >= 0x80 || of_b >= 0x80) return false;
    if (of_a != of_b && !EqualsIgnoringCase(a.substr(i, 1), b.substr(i, 1))) return true;
  }
  return false;
}

/// The name that is the same as `name` without regard to case, the first in the folder's order.
Result<std::optional<std::string>> SpellingOf(const UniqueFd& folder, const std::string& name) {
  Result<FolderReader> reader = FolderReader::Open(folder.get());
  if (!reader.ok()) return reader.error();
  const std::string wanted = FoldName(name);
  while (std::optional<std::string> candidate = reader.value().Next()) {
    if (!DifferAtOnce(*candidate, wanted) && FoldName(*candidate) == wanted) return candidate;
  }
  if (!reader.value().status().ok()) return reader.value().status().error();
  return std::optional<std::string>();
}

Result<std::string> LinkTarget(const UniqueFd& link) {
  std::array<char, PATH_MAX> text = {};
  const ssize_t size = ::readlinkat(link.get(), "", text.data(), text.size());
  if (size < 0) return ErrorOfErrno(errno);
  return std::string(text.data(), static_cast<std::size_t>(size));
}

/// The host path of an open folder.
Result<std::string> RealPath(const UniqueFd& fd) {
  std::array<char, PATH_MAX> text = {};
  const ssize_t size =
      ::readlink(fmt::format("/proc/self/fd/{}", fd.get()).c_str(), text.data(), text.size());
  if (size < 0) return ErrorOfErrno(errno);
  return std::string(text.data(), static_cast<std::size_t>(size));
}

/// One walk. The folders passed stay open, so that the ".." of a link needs no look at the disk.
class Walk {
 public:
  explicit Walk(const Drives& drives) : drives_(drives) {}

  Result<Place> To(const DriveRoot& drive, const WindowsPath& path) {
    UniqueFd root = Duplicate(drive.fd);
    if (!root.ok()) return ErrorOfErrno(errno);
    levels_.push_back({.fd = std::move(root), .name = "."});
    root_path_ = drive.real_path;
    for (auto part = path.parts.rbegin(); part != path.parts.rend(); ++part) {
      pending_.push_back({.name = *part, .from_link = false});
    }
    while (!pending_.empty() && !end_) {
      const Part part = std::move(pending_.back());
      pending_.pop_back();
      if (const Status step = Step(part); !step.ok()) return step.error();
    }
    return Arrive();
  }

 private:
  struct Part {
    std::string name;
    bool from_link = false;  // spelled exactly; may be ".."
  };
  struct Level {
    UniqueFd fd;
    std::string name;  // in the level above
  };
  /// What ends a walk other than a folder.
  struct End {
    UniqueFd fd;  // none: nothing there
    std::string name;
    struct stat info = {};
  };

  Status Step(const Part& part) {
    if (part.from_link && part.name == ".") return {};
    if (part.from_link && part.name == "..") {
      if (levels_.size() == 1) return Outside(last_link_);
      levels_.pop_back();
      return {};
    }
    std::string name = part.name;
    UniqueFd fd = OpenEntry(folder(), name);
    if (!fd.ok() && errno == ENOENT && !part.from_link) {
      const Result<std::optional<std::string>> spelling = SpellingOf(folder(), name);
      if (!spelling.ok()) return spelling.error();
      if (spelling.value()) {
        name = *spelling.value();
        fd = OpenEntry(folder(), name);
      } else {
        errno = ENOENT;
      }
    }
    if (!fd.ok()) return errno == ENOENT ? Finish({.fd = {}, .name = name}) : ErrorOfErrno(errno);
    return Enter(std::move(fd), name, part.from_link);
  }

  Status Enter(UniqueFd fd, const std::string& name, bool from_link) {
    struct stat info = {};
    if (::fstat(fd.get(), &info) != 0) return ErrorOfErrno(errno);
    if (S_ISDIR(info.st_mode)) {
      levels_.push_back({.fd = std::move(fd), .name = name});
      return {};
    }
    if (!S_ISLNK(info.st_mode)) return Finish({.fd = std::move(fd), .name = name, .info = info});

    if (++links_ > kMaxLinks) return StandardError(kPathNotFound, name + ": too many links");
    if (!from_link && pending_.empty()) {
      link_ = FolderEntry{.folder = Duplicate(folder()), .name = name};
      if (!link_->folder.ok()) return ErrorOfErrno(errno);
    }
    return Follow(fd, name);
  }

  Status Follow(const UniqueFd& link, const std::string& name) {
    if (const Result<bool> door = EnterDoor(name); !door.ok() || door.value()) {
      return door.status();
    }
    last_link_ = name;
    const Result<std::string> text = LinkTarget(link);
    if (!text.ok()) return text.error();
    std::string_view target = text.value();
    if (target.starts_with('/')) {
      if (!IsInside(target, root_path_)) return Outside(name);
      target.remove_prefix(root_path_.size());
      levels_.resize(1);
    }
    std::vector<Part> parts;
    while (!target.empty()) {
      const std::string_view part = target.substr(0, target.find('/'));
      if (!part.empty()) parts.push_back({.name = std::string(part), .from_link = true});
      target.remove_prefix(std::min(part.size() + 1, target.size()));
    }
    pending_.insert(pending_.end(), parts.rbegin(), parts.rend());
    return {};
  }

  /// Makes the target of a profile link that leads outside the new root; false for other links.
  Result<bool> EnterDoor(const std::string& name) {
    if (!drives_.follow_profile_links() || in_door_ || levels_.size() != 3 ||
        FoldName(levels_[1].name) != "USERS" || !IsProfileLink(name)) {
      return false;
    }
    UniqueFd target(::openat(folder().get(), name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!target.ok()) return false;
    const Result<std::string> real = RealPath(target);
    if (!real.ok()) return real.error();
    if (IsInside(real.value(), root_path_)) return false;
    levels_.clear();
    levels_.push_back({.fd = std::move(target), .name = "."});
    root_path_ = real.value();
    in_door_ = true;
    return true;
  }

  Status Finish(End end) {
    // What is asked for below something that is no folder, or below nothing, has no path.
    if (!pending_.empty()) return StandardError(kPathNotFound);
    end_ = std::move(end);
    return {};
  }

  Result<Place> Arrive() {
    Place place;
    place.link = std::move(link_);
    const Level top = std::move(levels_.back());
    if (end_) {
      place.entry = {.folder = Duplicate(top.fd), .name = end_->name};
      place.object = std::move(end_->fd);
      place.info = end_->info;
    } else {
      const bool root = levels_.size() == 1;
      place.entry = {.folder = Duplicate(root ? top.fd : levels_[levels_.size() - 2].fd),
                     .name = top.name};
      place.object = Duplicate(top.fd);
      if (!place.object.ok() || ::fstat(place.object.get(), &place.info) != 0) {
        return ErrorOfErrno(errno);
      }
    }
    if (!place.entry.folder.ok()) return ErrorOfErrno(errno);
    return place;
  }

  static Status Outside(const std::string& name) {
    return StandardError(kPathNotFound, name + ": a link that leads outside the machine");
  }

  const UniqueFd& folder() const { return levels_.back().fd; }

  const Drives& drives_;
  std::string root_path_;
  std::vector<Level> levels_;  // [0] is the root
  std::vector<Part> pending_;  // the next part last
  std::optional<FolderEntry> link_;
  std::optional<End> end_;
  std::string last_link_;
  int links_ = 0;
  bool in_door_ = false;
};

}  // namespace

Result<Place> WalkTo(const Drives& drives, const WindowsPath& path) {
  const DriveRoot* const drive = drives.Root(path.drive);
  if (drive == nullptr) return StandardError(kPathNotFound);
  Result<Place> place = Walk(drives).To(*drive, path);
  if (!place.ok()) return place;
  place.value().drive = path.drive;
  if (!path.parts.empty()) place.value().asked_name = path.parts.back();
  place.value().asked_as_folder = path.names_a_folder;
  return place;
}

}  // namespace zent
