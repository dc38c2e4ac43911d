#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Names of the files that are written beside another to take its place:
/// ".zent-PROCESS-NUMBER.tmp".
namespace zent {

/// What finds them all, and other names with them.
inline constexpr std::string_view kSiblingPattern = ".zent-*.tmp";

std::string SiblingName(std::uint32_t process, int number);

/// The process that made the sibling `name`; nothing for any other name.
std::optional<std::uint32_t> MakerOfSibling(std::string_view name);

}  // namespace zent
