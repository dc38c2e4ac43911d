#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"

namespace zent {

/// The tokens of one line, numbered from 1: the keyword of a setup-list line is token 1.
class TokenList {
 public:
  // NOLINTBEGIN(readability-identifier-naming): the names that containers have for generic code
  using value_type = std::string;
  using const_iterator = std::vector<std::string>::const_iterator;
  // NOLINTEND(readability-identifier-naming)

  TokenList() = default;
  TokenList(std::initializer_list<std::string_view> tokens);
  explicit TokenList(std::vector<std::string> tokens);

  std::size_t Count() const { return tokens_.size(); }

  /// Token `number`; kSubscriptOutOfRange when the list has no such token. A token that may be
  /// missing is read with `At(3).value_or("10")`.
  Result<std::string> At(std::size_t number) const;

  void Add(std::string_view token);
  void Clear();

  const_iterator begin() const { return tokens_.begin(); }
  const_iterator end() const { return tokens_.end(); }

 private:
  std::vector<std::string> tokens_;
};

}  // namespace zent
