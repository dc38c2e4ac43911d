#include "base/Text.h"
#include "lib/RegFuncs.h"

namespace zent {
namespace {

// In the order of kRootKeys.
constexpr std::array<std::string_view, kRootKeys.size()> kRootKeyNames = {
    "HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE", "HKEY_USERS"};

// Room for an expanded text, without the closing NUL.
constexpr std::size_t kExpandedCharacters = 1023;

std::string_view UpToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

}  // namespace

std::string GetRootKeyName(KeyHandle root) {
  for (std::size_t index = 0; index < kRootKeys.size(); ++index) {
    if (kRootKeys[index] == root) return std::string(kRootKeyNames[index]);
  }
  return {};
}

bool CloseRegKey(Registry& registry, KeyHandle key) { return registry.CloseKey(key).ok(); }

bool OpenRegKey(Registry& registry, KeyHandle root, std::string_view subkey, KeyHandle& key) {
  const Result<KeyHandle> opened = registry.OpenKey(root, subkey);
  if (opened.ok()) key = opened.value();
  return opened.ok();
}

Status CreateRegKey(Registry& registry, KeyHandle root, std::string_view subkey, KeyHandle& key) {
  if (subkey.starts_with('\\')) subkey.remove_prefix(1);
  const Result<KeyHandle> created = registry.CreateKey(root, subkey);
  if (created.ok()) key = created.value();
  return created.status();
}

bool GetRegValue(const Platform& machine, KeyHandle key, std::string_view name, std::string& text) {
  const Result<RegistryValue> value = machine.registry.QueryValue(key, name);
  if (!value.ok()) return false;
  const std::string_view stored = UpToNul(value.value().data);
  switch (value.value().type) {
    case kRegSz:
      text = stored;
      return true;
    case kRegExpandSz: {
      const std::string expanded = ExpandEnvironment(machine.system, stored);
      text = UpToNul(FirstCharacters(expanded, kExpandedCharacters));
      return true;
    }
    default:
      return false;
  }
}

Status SetRegValue(Registry& registry, KeyHandle key, std::string_view name,
                   std::string_view text) {
  return registry.SetText(key, name, text);
}

}  // namespace zent
