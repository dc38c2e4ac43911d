#include "app/linux/EmptyMachine.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <string>

#include "platform/posix/PosixErrors.h"

namespace zent {

EmptyMachine::~EmptyMachine() {
  if (folder_.empty()) return;
  std::error_code ignored;  // what cannot be removed is the temporary folder's
  std::filesystem::remove_all(folder_, ignored);
}

Status EmptyMachine::Make() {
  std::error_code error;
  const std::filesystem::path temporary = std::filesystem::temp_directory_path(error);
  if (error) return ErrorOfErrno(error.value());
  std::string name = (temporary / "zentupdate-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) return ErrorOfErrno(errno);
  folder_ = name;
  std::filesystem::create_directory(folder_ / "drive_c", error);
  if (error) return ErrorOfErrno(error.value());
  for (const char* file : {"system.reg", "user.reg"}) {
    std::ofstream text(folder_ / file);
    text << "WINE REGISTRY Version 2\n";
    if (!text.flush()) return StandardError(kDiskFull);
  }
  return {};
}

}  // namespace zent
