#pragma once

#include <string>

namespace zent {

/// The server that Wine runs for a prefix while a program of it runs. It keeps the registry in
/// memory and writes the files over, so that what anyone else stores meanwhile is lost.
///
/// It is found by the lock that it holds for as long as it lives, a write lock on the first byte of
/// the file `lock` in its folder. The folder and its files stay behind and tell nothing.
class WineServer {
 public:
  /// The server of the prefix in the folder `machine`. Server folders lie in `temp_folder`, which
  /// for Wine is always /tmp.
  explicit WineServer(std::string machine, std::string temp_folder = "/tmp");

  /// True when the server runs, or when its folder is there but may not be looked at.
  bool IsRunning() const;

 private:
  std::string machine_;
  std::string temp_folder_;
};

}  // namespace zent
