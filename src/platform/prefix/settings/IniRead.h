#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/prefix/settings/IniText.h"

/// What a settings file says. Names and results are UTF-8; limits count characters.
namespace zent {

/// `value` without one pair of equal quotes (single or double) around it.
std::string_view StripIniQuotes(std::string_view value);

/// The value of the first `key` in the first section `section`, without blanks and quotes around
/// it, cut to `limit`; nothing when there is none.
std::optional<std::string> FindIniValue(const IniText& file, std::string_view section,
                                        std::string_view key, std::size_t limit);

/// The names of the keys of the first section `section`, in the file's order and spelling, repeated
/// ones repeated, a NUL behind each, cut to `limit`. A nameless key is left out: an empty name
/// would end the list.
std::string ListIniKeys(const IniText& file, std::string_view section, std::size_t limit);

/// The names of the sections, as with ListIniKeys.
std::string ListIniSections(const IniText& file, std::size_t limit);

}  // namespace zent
