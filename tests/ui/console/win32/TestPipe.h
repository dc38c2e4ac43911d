#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <string_view>

namespace zent::testing {

/// A pipe of the system. Its ends are closed with it.
class TestPipe {
 public:
  TestPipe() { EXPECT_NE(CreatePipe(&reading_, &writing_, nullptr, 1U << 20U), FALSE); }
  TestPipe(const TestPipe&) = delete;
  TestPipe& operator=(const TestPipe&) = delete;
  ~TestPipe() {
    CloseWriting();
    CloseHandle(reading_);
  }

  HANDLE reading() const { return reading_; }
  HANDLE writing() const { return writing_; }
  void Put(std::string_view bytes) const {
    DWORD written = 0;
    EXPECT_NE(
        WriteFile(writing_, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr),
        FALSE);
    EXPECT_EQ(written, bytes.size());
  }
  void CloseWriting() {
    if (writing_ != nullptr) CloseHandle(writing_);
    writing_ = nullptr;
  }
  /// Everything that was written; closes the writing end.
  std::string TakeAll() {
    CloseWriting();
    std::string all;
    char bytes[4096];
    DWORD count = 0;
    while (ReadFile(reading_, bytes, sizeof(bytes), &count, nullptr) != FALSE && count > 0) {
      all.append(bytes, count);
    }
    return all;
  }

 private:
  HANDLE reading_ = nullptr;
  HANDLE writing_ = nullptr;
};

}  // namespace zent::testing
