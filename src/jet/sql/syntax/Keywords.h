#pragma once

#include <string_view>

namespace zent::jet {

/// True for a word that a statement can use as a name only in brackets. Any case.
bool IsReservedWord(std::string_view word);

}  // namespace zent::jet
