#include "platform/prefix/session/HostPrograms.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <string>

#include "platform/posix/UniqueFd.h"

namespace zent {
namespace {

constexpr std::string_view kWindowsMagic = "MZ";
constexpr std::string_view kScriptMagic = "#!";
constexpr std::string_view kElfMagic = "\177ELF";

/// The first bytes of a regular file, at most as many as the longest magic has.
std::string StartOf(const std::filesystem::path& file) {
  // Not blocking: the name may have become that of a pipe without a writer.
  const UniqueFd fd(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat found = {};
  if (!fd.ok() || ::fstat(fd.get(), &found) != 0 || !S_ISREG(found.st_mode)) return {};

  std::array<char, kElfMagic.size()> bytes = {};
  const ssize_t count = ::read(fd.get(), bytes.data(), bytes.size());
  return count > 0 ? std::string(bytes.data(), static_cast<std::size_t>(count)) : std::string();
}

bool IsExecutable(const std::filesystem::path& file) {
  return IsRegularFile(file) && ::access(file.c_str(), X_OK) == 0;
}

}  // namespace

ProgramKind ProgramKindOf(const std::filesystem::path& file) {
  const std::string start = StartOf(file);
  if (start.starts_with(kWindowsMagic)) return ProgramKind::Windows;
  const bool is_program = start == kElfMagic || start.starts_with(kScriptMagic);
  return is_program && IsExecutable(file) ? ProgramKind::Host : ProgramKind::None;
}

bool IsRegularFile(const std::filesystem::path& file) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(file, ignored);
}

std::optional<std::filesystem::path> FindHostProgram(std::string_view name,
                                                     std::string_view path_list) {
  while (!path_list.empty()) {
    const std::size_t end = path_list.find(':');
    const std::filesystem::path folder = path_list.substr(0, end);
    path_list.remove_prefix(end == std::string_view::npos ? path_list.size() : end + 1);
    if (folder.is_absolute() && IsExecutable(folder / name)) return folder / name;
  }
  return std::nullopt;
}

}  // namespace zent
