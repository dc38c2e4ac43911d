#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zent::xml {

/// The first namespace prefix other than "xml" that an XPath expression uses, or nothing.
std::optional<std::string> FirstPrefix(std::string_view xpath);

}  // namespace zent::xml
