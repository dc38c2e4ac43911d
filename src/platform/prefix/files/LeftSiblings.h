#pragma once

#include <sys/types.h>

#include <set>
#include <utility>

namespace zent {

/// Removes the half-written files that a killed run left behind, from each folder once: before the
/// first file of this run is put there. A folder that nothing is put into is not searched.
class LeftSiblings {
 public:
  /// `folder_fd` may be an O_PATH descriptor. No sibling of ours is in the folder yet.
  void RemoveFrom(int folder_fd);

 private:
  /// Device and inode: the same folder comes by several descriptors.
  std::set<std::pair<dev_t, ino_t>> searched_;
};

}  // namespace zent
