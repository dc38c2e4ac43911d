#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

#include "platform/FileSystem.h"

namespace zent::testing {

/// A file in memory that counts what is read of it, and fails where it is told to.
class ProbeFile : public File {
 public:
  /// `contents` must outlive this.
  explicit ProbeFile(std::string_view contents) : contents_(contents) {}

  /// The `nth` read (1 is the first one) fails with `error`.
  void FailRead(std::size_t nth, RuntimeError error) {
    failing_read_ = nth;
    error_ = std::move(error);
  }

  std::size_t reads() const { return reads_; }
  /// Bytes asked for, all reads together, whether or not the file holds them.
  std::uint64_t asked() const { return asked_; }

  Result<std::uint64_t> Size() override { return std::uint64_t{contents_.size()}; }
  Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> buffer) override {
    asked_ += buffer.size();
    if (++reads_ == failing_read_) return error_;
    if (offset >= contents_.size()) return std::size_t{0};
    const std::string_view bytes =
        contents_.substr(static_cast<std::size_t>(offset), buffer.size());
    std::copy(bytes.begin(), bytes.end(), buffer.begin());
    return bytes.size();
  }

 private:
  std::string_view contents_;
  std::size_t reads_ = 0;
  std::uint64_t asked_ = 0;
  std::size_t failing_read_ = 0;
  RuntimeError error_;
};

}  // namespace zent::testing
