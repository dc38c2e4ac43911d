#include "platform/prefix/settings/PrefixSettingsFiles.h"

#include <utility>

#include "base/CodePage.h"
#include "base/Text.h"
#include "platform/prefix/settings/IniEdit.h"
#include "platform/prefix/settings/IniRead.h"
#include "platform/prefix/settings/IniText.h"

namespace zent {
namespace {

/// A text as it reaches a program that calls in ANSI: "?" for what the code page lacks, up to the
/// first NUL.
std::string AnsiArgument(std::string_view text) {
  return FromAnsi(ToAnsi(text.substr(0, text.find('\0'))));
}

std::string DefaultOf(std::string_view default_text, std::size_t buffer_size) {
  const std::string text = AnsiArgument(default_text);
  const std::size_t last = text.find_last_not_of(' ');
  const std::string_view trimmed = std::string_view(text).substr(0, last + 1);
  return std::string(FirstCharacters(StripIniQuotes(trimmed), buffer_size - 1));
}

/// What a read asks for, in UTF-8; nothing when the default stands.
std::optional<std::string> Find(const IniText& file, std::optional<std::string_view> section,
                                std::optional<std::string_view> key, std::size_t buffer_size) {
  const std::size_t list_limit = buffer_size < 2 ? 0 : buffer_size - 2;
  if (!section) return ListIniSections(file, list_limit);
  const std::string section_name = AnsiArgument(*section);
  if (key) return FindIniValue(file, section_name, AnsiArgument(*key), buffer_size - 1);
  std::string keys = ListIniKeys(file, section_name, list_limit);
  if (keys.empty()) return std::nullopt;
  return keys;
}

bool Change(IniText& file, std::string_view section, std::optional<std::string_view> key,
            std::optional<std::string_view> value) {
  const std::string section_name = AnsiArgument(section);
  if (!key) return RemoveIniSection(file, section_name);
  const std::string key_name = AnsiArgument(*key);
  if (!value) return RemoveIniKey(file, section_name, key_name);
  return SetIniValue(file, section_name, key_name, AnsiArgument(*value));
}

}  // namespace

SettingsText PrefixSettingsFiles::Read(std::string_view file,
                                       std::optional<std::string_view> section,
                                       std::optional<std::string_view> key,
                                       std::string_view default_text, std::size_t buffer_size) {
  Result<std::string> bytes = ReadWholeFile(files_, PathOf(file));
  SettingsText result;
  result.file = bytes.status();
  if (buffer_size == 0) return result;
  const IniText text(bytes.ok() ? std::move(bytes.value()) : std::string());
  std::optional<std::string> found = Find(text, section, key, buffer_size);
  result.text = found ? std::move(*found) : DefaultOf(default_text, buffer_size);
  return result;
}

Status PrefixSettingsFiles::Write(std::string_view file, std::string_view section,
                                  std::optional<std::string_view> key,
                                  std::optional<std::string_view> value) {
  const std::string path = PathOf(file);
  Result<std::string> bytes = ReadWholeFile(files_, path);
  if (!bytes.ok() && bytes.number() != kFileNotFound) return bytes.error();
  IniText text(bytes.ok() ? std::move(bytes.value()) : std::string());
  if (!Change(text, section, key, value)) return {};
  return files_.Write(path, text.bytes());
}

std::string PrefixSettingsFiles::PathOf(std::string_view file) {
  if (file.find_first_of(R"(\/:)") != std::string_view::npos) return std::string(file);
  return system_.WindowsFolder() + '\\' + std::string(file);
}

}  // namespace zent
