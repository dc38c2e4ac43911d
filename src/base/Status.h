#pragma once

#include <optional>
#include <utility>
#include <variant>

#include "base/RuntimeError.h"

namespace zent {

/// Success, or the error that stopped the operation.
class [[nodiscard]] Status {
 public:
  Status() = default;
  Status(RuntimeError error) : error_(std::move(error)) {}  // implicit: `return StandardError(70);`

  bool ok() const { return !error_; }
  /// Only when !ok().
  const RuntimeError& error() const { return *error_; }
  /// The error number, 0 for success.
  int number() const { return error_ ? error_->number : 0; }

 private:
  std::optional<RuntimeError> error_;
};

/// A value, or the error that kept it from being made.
template <typename T>
class [[nodiscard]] Result {
 public:
  Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}
  Result(RuntimeError error) : content_(std::in_place_index<1>, std::move(error)) {}

  bool ok() const { return content_.index() == 0; }
  /// Only when ok().
  T& value() { return *std::get_if<0>(&content_); }
  const T& value() const { return *std::get_if<0>(&content_); }
  T value_or(T otherwise) const { return ok() ? value() : std::move(otherwise); }
  /// Only when !ok().
  const RuntimeError& error() const { return *std::get_if<1>(&content_); }
  /// The error number, 0 for success.
  int number() const { return ok() ? 0 : error().number; }
  /// The outcome without the value.
  Status status() const { return ok() ? Status() : Status(error()); }

 private:
  std::variant<T, RuntimeError> content_;
};

}  // namespace zent
