#pragma once

#include <cstddef>
#include <string_view>

namespace zent::xml {

/// True when a tag of `text` has more than `limit` attributes. The parser compares every two of an
/// element, so it must not see very many.
bool HasTagWithMoreThan(std::size_t limit, std::string_view text);

}  // namespace zent::xml
