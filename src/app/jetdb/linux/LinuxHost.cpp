#include "app/jetdb/linux/LinuxHost.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <system_error>

#include "jet/format/ValueText.h"

namespace zent {

std::ostream& LinuxJetdbHost::output() { return std::cout; }
std::ostream& LinuxJetdbHost::errors() { return std::cerr; }

bool LinuxJetdbHost::IsSameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  return a == b || std::filesystem::equivalent(a, b, error);
}

Result<std::string> LinuxJetdbHost::ReadText(const std::string& path) {
  if (path == "-") return std::string(std::istreambuf_iterator<char>(std::cin), {});
  std::ifstream file(path, std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(file), {});
  if (!file.is_open() || file.bad()) return StandardError(kFileNotFound, path);
  return text;
}

std::optional<std::string> LinuxJetdbHost::Variable(const std::string& name) {
  const char* const value = std::getenv(name.c_str());  // NOLINT(concurrency-mt-unsafe): one thread
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

jet::User LinuxJetdbHost::user() {
  std::array<char, 256> name = {};
  if (::gethostname(name.data(), name.size() - 1) != 0) return {.computer = "localhost"};
  return {.computer = name.data()};
}

jet::Date LinuxJetdbHost::Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  ::localtime_r(&now, &local);
  return jet::JoinDate({.year = local.tm_year + 1900,
                        .month = local.tm_mon + 1,
                        .day = local.tm_mday,
                        .hour = local.tm_hour,
                        .minute = local.tm_min,
                        .second = local.tm_sec % 60})
      .value_or(jet::Date());
}

}  // namespace zent
