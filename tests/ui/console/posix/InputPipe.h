#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <string_view>

namespace zent::testing {

/// A pipe to read from, with what the test puts in (64 KB at most at a time).
class InputPipe {
 public:
  InputPipe() { EXPECT_EQ(::pipe2(ends_.data(), O_CLOEXEC), 0); }
  /// Holds `typed` and then ends.
  explicit InputPipe(std::string_view typed) : InputPipe() {
    Type(typed);
    End();
  }
  InputPipe(const InputPipe&) = delete;
  InputPipe& operator=(const InputPipe&) = delete;
  ~InputPipe() {
    End();
    ::close(ends_[0]);
  }

  int fd() const { return ends_[0]; }
  void Type(std::string_view typed) {
    EXPECT_EQ(::write(ends_[1], typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
  }
  void End() {
    if (ends_[1] >= 0) ::close(ends_[1]);
    ends_[1] = -1;
  }

 private:
  std::array<int, 2> ends_ = {-1, -1};
};

}  // namespace zent::testing
