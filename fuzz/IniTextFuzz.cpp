#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "platform/prefix/settings/IniEdit.h"
#include "platform/prefix/settings/IniRead.h"
#include "platform/prefix/settings/IniText.h"

// A settings file of any bytes: what is written is read again, and no other value changes.

namespace {

constexpr std::size_t kNoLimit = std::size_t{1} << 30U;

void Require(bool kept) {
  if (!kept) std::abort();
}

/// Calls `visit` with each name of a list of names.
template <typename Visit>
void ForEachName(std::string_view names, Visit visit) {
  while (!names.empty()) {
    const std::size_t end = names.find('\0');
    visit(names.substr(0, end));
    names.remove_prefix(end + 1);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const zent::IniText before(bytes);
  zent::IniText after(bytes);

  const bool changed = zent::SetIniValue(after, "S", "Key", "value");
  Require(changed == (after.bytes() != bytes));
  Require(zent::FindIniValue(after, "S", "Key", kNoLimit) == "value");
  Require(zent::IniText(after.bytes()).text() == after.text());

  ForEachName(zent::ListIniSections(before, kNoLimit), [&](std::string_view section) {
    ForEachName(zent::ListIniKeys(before, section, kNoLimit), [&](std::string_view key) {
      const std::optional<std::string> value = zent::FindIniValue(after, section, key, kNoLimit);
      const bool written = value == "value";
      Require(written || value == zent::FindIniValue(before, section, key, kNoLimit));
    });
  });

  zent::RemoveIniKey(after, "S", "Key");
  zent::RemoveIniSection(after, "S");
  return 0;
}
