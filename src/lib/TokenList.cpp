#include "lib/TokenList.h"

#include <utility>

namespace zent {

TokenList::TokenList(std::initializer_list<std::string_view> tokens)
    : tokens_(tokens.begin(), tokens.end()) {}

TokenList::TokenList(std::vector<std::string> tokens) : tokens_(std::move(tokens)) {}

Result<std::string> TokenList::At(std::size_t number) const {
  if (number == 0 || number > tokens_.size()) return StandardError(kSubscriptOutOfRange);
  return tokens_[number - 1];
}

void TokenList::Add(std::string_view token) { tokens_.emplace_back(token); }

void TokenList::Clear() { tokens_.clear(); }

}  // namespace zent
