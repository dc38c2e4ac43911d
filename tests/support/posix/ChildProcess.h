#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>

namespace zent::testing {

/// How another process holds a file.
enum class Hold { Reading, Writing, Mapped, Program };

/// Another process that holds a file from the end of the constructor on until it is destroyed.
class HoldingProcess {
 public:
  HoldingProcess(const std::filesystem::path& file, Hold how);
  ~HoldingProcess();
  HoldingProcess(const HoldingProcess&) = delete;
  HoldingProcess& operator=(const HoldingProcess&) = delete;

  /// False when the file could not be held.
  bool ok() const { return ok_; }

 private:
  pid_t process_ = -1;
  bool ok_ = false;
};

/// Runs `work` in a child process and returns its text; "no answer" when the child did not get to
/// its end. Use it for what must not befall the test itself: limits, lost rights.
std::string RunInChild(const std::function<std::string()>& work);

/// As RunInChild, as a user without rights where the test runs as root.
std::string RunAsOrdinaryUser(const std::function<std::string()>& work);

/// Gives `path` and all below it to the user of RunAsOrdinaryUser.
void GiveToOrdinaryUser(const std::filesystem::path& path);

}  // namespace zent::testing
