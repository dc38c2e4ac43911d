#include "platform/win32/settings/Win32SettingsFiles.h"

#include <windows.h>

#include <string>

#include "base/Text.h"
#include "platform/win32/AnsiText.h"
#include "platform/win32/FileChecks.h"
#include "platform/win32/Win32Errors.h"

namespace zent {
namespace {

constexpr std::size_t kLongestArgument = 32766;
constexpr std::size_t kFirstBuffer = 4096;
constexpr std::size_t kLargestBuffer = std::size_t{1} << 27U;
constexpr std::size_t kBufferGrowth = 8;

using OptionalText = std::optional<std::string>;

/// A text as the system's calls take it, in ANSI.
std::string Argument(std::string_view text) { return ShownAnsiOf(text.substr(0, text.find('\0'))); }

OptionalText OptionalArgument(std::optional<std::string_view> text) {
  if (!text) return std::nullopt;
  return Argument(*text);
}

const char* PointerTo(const OptionalText& text) { return text ? text->c_str() : nullptr; }

bool IsTooLong(const OptionalText& text) { return text && text->size() > kLongestArgument; }

/// The path of a settings file in ANSI.
Result<std::string> PathOf(std::string_view file) {
  Result<std::string> path = AnsiOf(file);
  if (!path.ok() || file.find_first_of(R"(\/:)") != std::string_view::npos) return path;
  std::string folder(MAX_PATH, '\0');
  const UINT length = GetWindowsDirectoryA(folder.data(), MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return LastError();
  folder.resize(length);
  return folder + '\\' + path.value();
}

/// All that the system answers, in ANSI, whatever its length: a cut before the quotes are off, or
/// within a character of two bytes, would give another text.
std::string Ask(const OptionalText& section, const OptionalText& key, const char* default_text,
                const std::string& path) {
  for (std::size_t size = kFirstBuffer;; size *= kBufferGrowth) {
    std::string answer(size, '\0');
    const DWORD length =
        GetPrivateProfileStringA(PointerTo(section), PointerTo(key), default_text, answer.data(),
                                 static_cast<DWORD>(size), path.c_str());
    // A text that was cut leaves one byte of the buffer, a list two.
    if (length + 2 < size || size >= kLargestBuffer) {
      answer.resize(length);
      return answer;
    }
  }
}

/// What a read asks for; nothing when the default stands.
OptionalText Find(const OptionalText& section, const OptionalText& key, const std::string& path) {
  if (IsTooLong(section) || IsTooLong(key)) return std::nullopt;
  if (!section || !key) return Ask(section, key, "", path);
  // A value is there when the answer does not change with the default.
  std::string value = Ask(section, key, "0", path);
  if (value == "0" && Ask(section, key, "1", path) == "1") return std::nullopt;
  return value;
}

/// The default, as the system trims it. Not left to the system, which may take quotes off twice.
std::string DefaultOf(std::string_view default_text) {
  std::string text = Argument(default_text);
  text.resize(text.find_last_not_of(' ') + 1);
  const bool is_quoted = text.size() >= 2 && text.front() == text.back() &&
                         (text.front() == '"' || text.front() == '\'');
  return is_quoted ? text.substr(1, text.size() - 2) : text;
}

std::string Cut(std::string_view ansi, std::size_t count) {
  return std::string(FirstCharacters(TextOfAnsi(ansi), count));
}

}  // namespace

SettingsText Win32SettingsFiles::Read(std::string_view file,
                                      std::optional<std::string_view> section,
                                      std::optional<std::string_view> key,
                                      std::string_view default_text, std::size_t buffer_size) {
  SettingsText result;
  const Result<std::string> path = PathOf(file);
  result.file = path.ok() ? CheckFile(path.value(), GENERIC_READ) : path.status();
  if (buffer_size == 0) return result;

  OptionalText found;
  if (result.file.ok()) {
    found = Find(OptionalArgument(section), OptionalArgument(key), path.value());
  }
  if (section && key) {
    result.text = Cut(found ? *found : DefaultOf(default_text), buffer_size - 1);
    return result;
  }
  // The default stands for a list of keys that is empty or has no room.
  if (buffer_size > 2 && found) result.text = Cut(*found, buffer_size - 2);
  if (section && result.text.empty()) result.text = Cut(DefaultOf(default_text), buffer_size - 1);
  return result;
}

Status Win32SettingsFiles::Write(std::string_view file, std::string_view section,
                                 std::optional<std::string_view> key,
                                 std::optional<std::string_view> value) {
  const Result<std::string> path = PathOf(file);
  if (!path.ok()) return path.error();
  Status writable = CheckFile(path.value(), GENERIC_READ | GENERIC_WRITE);
  const bool is_removal = !key || !value;
  if (writable.number() == kFileNotFound) {
    if (is_removal) return {};
  } else if (!writable.ok()) {
    return writable;
  }

  const OptionalText section_name = Argument(section);
  const OptionalText key_name = OptionalArgument(key);
  const OptionalText text = OptionalArgument(value);
  if (IsTooLong(section_name) || IsTooLong(key_name) || IsTooLong(text)) {
    return StandardError(kOutOfStringSpace);
  }
  if (WritePrivateProfileStringA(PointerTo(section_name), PointerTo(key_name), PointerTo(text),
                                 path.value().c_str()) == FALSE) {
    // Some systems say so of what was to be removed and is not there.
    if (is_removal && GetLastError() == ERROR_FILE_NOT_FOUND) return {};
    return LastError();
  }
  // Has a system that keeps files in memory write this one and read it anew.
  WritePrivateProfileStringA(nullptr, nullptr, nullptr, path.value().c_str());
  return {};
}

}  // namespace zent
