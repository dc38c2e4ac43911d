#include "app/RecordFile.h"

#include <iostream>
#include <utility>

#include "app/HostPath.h"

namespace zent {

Result<RecordFile> RecordFile::Create(const std::string& path) {
  std::ofstream file(HostPath(path), std::ios::binary | std::ios::trunc);
  if (!file.is_open()) return StandardError(kPathFileAccess, path);
  return RecordFile(path, std::move(file));
}

void RecordFile::Write(std::string_view text) {
  if (!file_.good()) return;
  file_ << text << std::flush;
  if (!file_.good()) std::cerr << "zentupdate: cannot write " << path_ << "\n";
}

}  // namespace zent
