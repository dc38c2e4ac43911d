#include "app/RecordFile.h"

namespace zent {

Result<RecordFile> RecordFile::Create(const std::string& path) {
  OwnFile file = CreateOwnFile(path);
  if (file == nullptr) return StandardError(kPathFileAccess, path);
  return RecordFile(path, std::move(file));
}

void RecordFile::Write(std::string_view text) {
  if (failed_) return;
  const bool written = std::fwrite(text.data(), 1, text.size(), file_.get()) == text.size();
  failed_ = std::fflush(file_.get()) != 0 || !written;
}

}  // namespace zent
