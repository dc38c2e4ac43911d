#pragma once

#include <string_view>

namespace zent {

/// True when `a` stands before `b` in a registry file: character by character in small letters, so
/// that "_" comes before every letter and the empty name (the default value) first.
bool ComesBefore(std::string_view a, std::string_view b);

}  // namespace zent
