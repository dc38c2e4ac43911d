#pragma once

#include <string>
#include <string_view>

/// Text for the wide forms of the system's calls.
namespace zent {

/// UTF-16 of UTF-8; a broken sequence becomes the replacement character.
std::wstring WideOf(std::string_view utf8);

/// UTF-8 of UTF-16; half a pair becomes the replacement character.
std::string Utf8Of(std::wstring_view wide);

}  // namespace zent
