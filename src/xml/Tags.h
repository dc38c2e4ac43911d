#pragma once

#include <cstddef>
#include <string_view>

namespace zent::xml {

/// True when a tag of `text`, which is UTF-8, has more than `limit` attributes. The parser compares
/// every two of an element, so it must not see very many. Comments and CDATA sections are no tags;
/// true, though, where it cannot be told whether the parser takes them for such.
bool HasTagWithMoreThan(std::size_t limit, std::string_view text);

}  // namespace zent::xml
