#include "platform/win32/files/SiblingName.h"

#include <charconv>
#include <system_error>

namespace zent {
namespace {

constexpr std::string_view kNameStart = ".zent-";
constexpr std::string_view kNameEnd = ".tmp";

}  // namespace

std::string SiblingName(std::uint32_t process, int number) {
  return std::string(kNameStart) + std::to_string(process) + '-' + std::to_string(number) +
         std::string(kNameEnd);
}

std::optional<std::uint32_t> MakerOfSibling(std::string_view name) {
  if (!name.starts_with(kNameStart) || !name.ends_with(kNameEnd)) return std::nullopt;
  std::uint32_t process = 0;
  const char* const digits = name.data() + kNameStart.size();
  const std::from_chars_result read = std::from_chars(digits, name.data() + name.size(), process);
  if (read.ec != std::errc() || process == 0) return std::nullopt;
  // The name is read back, so that only what we write is taken for ours.
  name.remove_prefix(static_cast<std::size_t>(read.ptr - name.data()));
  int number = 0;
  if (!name.starts_with('-')) return std::nullopt;
  const std::from_chars_result last =
      std::from_chars(name.data() + 1, name.data() + name.size(), number);
  if (last.ec != std::errc() || number < 0) return std::nullopt;
  const std::string_view rest = name.substr(static_cast<std::size_t>(last.ptr - name.data()));
  return rest == kNameEnd ? std::optional(process) : std::nullopt;
}

}  // namespace zent
