#include "platform/prefix/files/LeftSiblings.h"

#include <sys/stat.h>

#include "platform/posix/ReplaceFile.h"

namespace zent {

void LeftSiblings::RemoveFrom(int folder_fd) {
  struct stat info = {};
  if (::fstat(folder_fd, &info) != 0) return;
  if (searched_.emplace(info.st_dev, info.st_ino).second) RemoveLeftSiblings(folder_fd);
}

}  // namespace zent
