#pragma once

#include <string_view>

namespace zent::xml {

/// The document type declaration in the text of a well-formed document, with its marks, or nothing.
std::string_view DoctypeOf(std::string_view text);

}  // namespace zent::xml
