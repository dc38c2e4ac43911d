#pragma once

#include <cstdint>
#include <utility>

namespace zent::odbc {

struct OdbcCalls;

/// Owns one handle of the driver manager: of an environment, a connection or a statement.
class OdbcHandle {
 public:
  OdbcHandle() = default;
  OdbcHandle(const OdbcCalls& calls, std::int16_t type, void* handle)
      : calls_(&calls), type_(type), handle_(handle) {}
  OdbcHandle(OdbcHandle&& other) noexcept { swap(other); }
  OdbcHandle& operator=(OdbcHandle&& other) noexcept {
    OdbcHandle(std::move(other)).swap(*this);
    return *this;
  }
  ~OdbcHandle();

  void* get() const { return handle_; }
  std::int16_t type() const { return type_; }

 private:
  void swap(OdbcHandle& other) noexcept {
    std::swap(calls_, other.calls_);
    std::swap(type_, other.type_);
    std::swap(handle_, other.handle_);
  }

  const OdbcCalls* calls_ = nullptr;
  std::int16_t type_ = 0;
  void* handle_ = nullptr;
};

}  // namespace zent::odbc
