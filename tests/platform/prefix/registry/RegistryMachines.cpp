#include "platform/prefix/registry/RegistryMachines.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

namespace zent::testing {

std::string SampleFile(const std::string& name) {
  return ReadHostFile(std::filesystem::path(ZENT_TEST_DATA) / "registry" / name);
}

std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    const bool has_return = end > at && text[end - 1] == '\r';
    lines.emplace_back(text.substr(at, end - at - (has_return ? 1 : 0)));
    at = end + 1;
  }
  return lines;
}

bool AreInOrder(const std::vector<std::string>& lines, const std::vector<std::string>& all) {
  auto at = all.begin();
  for (const std::string& line : lines) {
    at = std::find(at, all.end(), line);
    if (at == all.end()) return false;
    ++at;
  }
  return true;
}

MachineFolder::MachineFolder() : MachineFolder(SampleFile("system.reg"), SampleFile("user.reg")) {
  Put("userdef.reg", SampleFile("userdef.reg"));
}

MachineFolder::MachineFolder(std::string_view system_file, std::string_view user_file) {
  std::filesystem::create_directory(folder_.path() / "tmp");
  Put("system.reg", system_file);
  Put("user.reg", user_file);
}

std::vector<std::string> MachineFolder::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path())) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::unique_ptr<PrefixRegistry> MachineFolder::Open() {
  Result<std::unique_ptr<PrefixRegistry>> registry = PrefixRegistry::Open(
      path(), clock_, [] { return kNow; }, temp());
  EXPECT_TRUE(registry.ok()) << registry.error().description;
  return registry.ok() ? std::move(registry.value()) : nullptr;
}

std::string MachineFolder::ServerName() const {
  struct stat status = {};
  EXPECT_EQ(::stat(path().c_str(), &status), 0);
  return fmt::format("server-{:x}-{:x}", status.st_dev, status.st_ino);
}

std::string MachineFolder::ServerFolder() const {
  return fmt::format("{}/.wine-{}/{}", temp(), ::getuid(), ServerName());
}

LockHolder::LockHolder(const std::string& folder) {
  std::filesystem::create_directories(folder);
  int ready[2] = {};
  EXPECT_EQ(::pipe(ready), 0);
  child_ = ::fork();
  if (child_ == 0) {
    const int fd = ::open((folder + "/lock").c_str(), O_CREAT | O_RDWR, 0600);
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_len = 1;
    const bool locked = ::fcntl(fd, F_SETLK, &lock) == 0;
    const char answer = locked ? 'y' : 'n';
    if (::write(ready[1], &answer, 1) != 1) ::_exit(1);
    for (;;) ::pause();
  }
  char answer = 'n';
  EXPECT_EQ(::read(ready[0], &answer, 1), 1);
  EXPECT_EQ(answer, 'y');
  ::close(ready[0]);
  ::close(ready[1]);
}

void LockHolder::End() {
  if (child_ <= 0) return;
  ::kill(child_, SIGKILL);
  ::waitpid(child_, nullptr, 0);
  child_ = -1;
}

int RunInChild(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

bool BecomeOrdinaryUser() {
  constexpr uid_t kNobody = 65534;
  return ::geteuid() != 0 || ::setresuid(kNobody, kNobody, kNobody) == 0;
}

std::string ReadData(Registry& registry, KeyHandle root, std::string_view path,
                     std::string_view name) {
  const Result<KeyHandle> key = registry.OpenKey(root, path);
  if (!key.ok()) return "(none)";
  const Result<RegistryValue> value = registry.QueryValue(key.value(), name);
  EXPECT_TRUE(registry.CloseKey(key.value()).ok());
  return value.ok() ? value.value().data : "(none)";
}

Status WriteText(Registry& registry, KeyHandle root, std::string_view path, std::string_view name,
                 std::string_view text) {
  const Result<KeyHandle> key = registry.CreateKey(root, path);
  if (!key.ok()) return key.error();
  Status set = registry.SetText(key.value(), name, text);
  const Status closed = registry.CloseKey(key.value());
  return set.ok() ? closed : set;
}

}  // namespace zent::testing
