#include "app/HostFile.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "app/HostPath.h"

namespace zent {
namespace {

constexpr std::uintmax_t kLimit = 16U << 20U;  // bytes

}  // namespace

Result<std::string> ReadHostFile(const std::string& name) {
  const std::filesystem::path path = HostPath(name);
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return StandardError(kFileNotFound);
  if (std::filesystem::file_size(path, error) > kLimit) return StandardError(kOutOfStringSpace);
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) return StandardError(kPathFileAccess);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

Result<std::string> ReadAll(std::istream& input) {
  std::string text;
  char piece[4096];
  while (input.read(piece, sizeof(piece)).gcount() > 0) {
    text.append(piece, static_cast<std::size_t>(input.gcount()));
    if (text.size() > kLimit) return StandardError(kOutOfStringSpace);
  }
  return text;
}

}  // namespace zent
