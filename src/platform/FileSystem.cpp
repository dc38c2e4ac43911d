#include "platform/FileSystem.h"

namespace zent {

Result<std::string> ReadWholeFile(FileSystem& files, std::string_view path, std::uint64_t limit) {
  const Result<std::unique_ptr<File>> file = files.OpenForReading(path);
  if (!file.ok()) return file.error();
  const Result<std::uint64_t> size = file.value()->Size();
  if (!size.ok()) return size.error();
  if (size.value() > limit) return StandardError(kOutOfStringSpace);

  std::string contents(static_cast<std::size_t>(size.value()), '\0');
  std::size_t filled = 0;
  while (filled < contents.size()) {
    const Result<std::size_t> read =
        file.value()->ReadAt(filled, std::span(contents).subspan(filled));
    if (!read.ok()) return read.error();
    if (read.value() == 0) break;
    filled += read.value();
  }
  contents.resize(filled);
  return contents;
}

}  // namespace zent
