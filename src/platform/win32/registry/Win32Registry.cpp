#include "platform/win32/registry/Win32Registry.h"

#include <algorithm>
#include <limits>
#include <string>

#include "platform/win32/AnsiText.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/registry/KeyPath.h"

namespace zent {
namespace {

constexpr std::size_t kUsualValueSize = 1024;

/// The system's handle of a predefined root; null for any other number.
HKEY RootOf(KeyHandle key) {
  switch (key) {
    case KeyHandle::ClassesRoot:
      return HKEY_CLASSES_ROOT;
    case KeyHandle::CurrentUser:
      return HKEY_CURRENT_USER;
    case KeyHandle::LocalMachine:
      return HKEY_LOCAL_MACHINE;
    case KeyHandle::Users:
      return HKEY_USERS;
    default:
      return nullptr;
  }
}

RuntimeError RegistryError(LSTATUS code) {
  // The key has been deleted since it was opened.
  if (code == ERROR_KEY_DELETED) return StandardError(kFileNotFound);
  // A name or place that the registry does not take; the number's usual meaning is a program's
  // mistake.
  if (code == ERROR_INVALID_PARAMETER) return StandardError(kPathFileAccess);
  return ErrorOfWin32(static_cast<unsigned long>(code));
}

bool IsText(DWORD type) { return type == kRegSz || type == kRegExpandSz || type == kRegMultiSz; }

}  // namespace

Result<KeyHandle> Win32Registry::OpenKey(KeyHandle parent, std::string_view path) {
  const HKEY parent_key = Find(parent);
  if (parent_key == nullptr) return StandardError(kPathFileAccess);
  const Result<std::string> ansi = AnsiKeyPath(path, kFileNotFound);
  if (!ansi.ok()) return ansi.error();
  HKEY key = nullptr;
  // RegOpenKey answers an empty path with the same handle, which could then be closed twice.
  const LSTATUS code = ansi.value().empty()
                           ? RegOpenKeyExA(parent_key, "", 0, MAXIMUM_ALLOWED, &key)
                           : RegOpenKeyA(parent_key, ansi.value().c_str(), &key);
  if (code != ERROR_SUCCESS) return RegistryError(code);
  return Remember(key);
}

Result<KeyHandle> Win32Registry::CreateKey(KeyHandle parent, std::string_view path) {
  const HKEY parent_key = Find(parent);
  if (parent_key == nullptr) return StandardError(kPathFileAccess);
  const Result<std::string> ansi = AnsiKeyPath(path, kPathFileAccess);
  if (!ansi.ok()) return ansi.error();
  if (ansi.value().empty()) return OpenKey(parent, path);
  HKEY key = nullptr;
  const LSTATUS code = RegCreateKeyA(parent_key, ansi.value().c_str(), &key);
  if (code != ERROR_SUCCESS) return RegistryError(code);
  return Remember(key);
}

Status Win32Registry::CloseKey(KeyHandle key) {
  if (RootOf(key) != nullptr) return {};
  const auto opened = opened_.find(key);
  if (opened == opened_.end()) return StandardError(kPathFileAccess);
  const LSTATUS code = RegCloseKey(opened->second.release());
  opened_.erase(opened);
  if (code != ERROR_SUCCESS) return RegistryError(code);
  return {};
}

Result<RegistryValue> Win32Registry::QueryValue(KeyHandle key, std::string_view name) {
  const HKEY opened = Find(key);
  if (opened == nullptr) return StandardError(kPathFileAccess);
  const Result<std::string> ansi = AnsiOf(name);
  if (!ansi.ok()) return StandardError(kFileNotFound);

  std::string data(kUsualValueSize, '\0');
  DWORD type = REG_NONE;
  DWORD size = 0;
  LSTATUS code = ERROR_MORE_DATA;
  // Asked until it fits: another program may lengthen the value meanwhile.
  while (code == ERROR_MORE_DATA) {
    data.resize(std::max<std::size_t>(size, data.size()));
    size = static_cast<DWORD>(data.size());
    code = RegQueryValueExA(opened, ansi.value().c_str(), nullptr, &type,
                            reinterpret_cast<BYTE*>(data.data()), &size);
  }
  if (code != ERROR_SUCCESS) return RegistryError(code);
  data.resize(size);
  return RegistryValue{type, IsText(type) ? TextOfAnsi(data) : std::move(data)};
}

Status Win32Registry::SetText(KeyHandle key, std::string_view name, std::string_view text) {
  const HKEY opened = Find(key);
  if (opened == nullptr) return StandardError(kPathFileAccess);
  const Result<std::string> ansi = AnsiOf(name);
  if (!ansi.ok()) return StandardError(kPathFileAccess);
  const std::string data = ShownAnsiOf(text);
  if (data.size() >= std::numeric_limits<DWORD>::max()) return StandardError(kOutOfStringSpace);
  // The NUL at the end is part of a text value.
  const LSTATUS code = RegSetValueExA(opened, ansi.value().c_str(), 0, REG_SZ,
                                      reinterpret_cast<const BYTE*>(data.c_str()),
                                      static_cast<DWORD>(data.size() + 1));
  if (code != ERROR_SUCCESS) return RegistryError(code);
  return {};
}

HKEY Win32Registry::Find(KeyHandle key) const {
  const auto opened = opened_.find(key);
  return opened == opened_.end() ? RootOf(key) : opened->second.get();
}

KeyHandle Win32Registry::Remember(HKEY key) {
  const auto handle = static_cast<KeyHandle>(++last_handle_);
  opened_[handle] = UniqueKey(key);
  return handle;
}

}  // namespace zent
