#include "platform/win32/links/Win32ShellLinks.h"

#include <windows.h>

#include <algorithm>
#include <cctype>
#include <string>

#include "platform/win32/AnsiText.h"
#include "platform/win32/FileChecks.h"
#include "platform/win32/UniqueHandle.h"
#include "platform/win32/Win32Errors.h"
#include "platform/win32/files/FilePath.h"
#include "platform/win32/files/SiblingName.h"
#include "platform/win32/links/LinkFile.h"

namespace zent {
namespace {

// The link's file counts texts in 16 bits, some shells with a NUL behind them.
constexpr std::size_t kLongestArguments = 0xFFFE;

bool IsDrivePath(std::string_view path) {
  return path.size() >= 3 && std::isalpha(static_cast<unsigned char>(path[0])) != 0 &&
         path[1] == ':' && path[2] == '\\';
}

Result<LinkTexts> TextsOf(const ShellLink& link) {
  std::string target = link.target;
  std::replace(target.begin(), target.end(), '/', '\\');
  const Result<std::string> ansi_target = AnsiOf(target);
  const Result<std::string> arguments = AnsiOf(link.arguments);
  const Result<std::string> folder = AnsiOf(link.working_folder);
  const bool fits = IsDrivePath(target) && ansi_target.ok() && arguments.ok() && folder.ok() &&
                    ansi_target.value().size() < MAX_PATH && folder.value().size() < MAX_PATH &&
                    arguments.value().size() <= kLongestArguments;
  if (!fits) return StandardError(kBadFileName);
  return LinkTexts{ansi_target.value(), arguments.value(), folder.value()};
}

Result<FilePath> PlaceOf(std::string_view link_file) {
  std::string text(link_file);
  std::replace(text.begin(), text.end(), '/', '\\');
  const Result<std::string> ansi = AnsiOf(text);
  if (!ansi.ok()) return ansi.error();
  return FilePath{text, ansi.value()};
}

/// Puts the whole file `sibling` in the place of `path`; both in ANSI.
Status PutInPlace(const std::string& sibling, const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  {
    // Shared: a virus scanner opens what is new.
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const UniqueHandle file(
        CreateFileA(sibling.c_str(), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!file.ok() || FlushFileBuffers(file.get()) == FALSE) return LastError();
  }
  if (attributes != INVALID_FILE_ATTRIBUTES) SetFileAttributesA(sibling.c_str(), attributes);
  constexpr DWORD kReplace = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  if (MoveFileExA(sibling.c_str(), path.c_str(), kReplace) == FALSE) return LastError();
  return {};
}

}  // namespace

Status Win32ShellLinks::Create(std::string_view link_file, const ShellLink& link) {
  const Result<LinkTexts> texts = TextsOf(link);
  if (!texts.ok()) return texts.error();
  const Result<FilePath> place = PlaceOf(link_file);
  if (!place.ok()) return place.error();
  Status replaceable = CheckFile(place.value().ansi, GENERIC_WRITE | DELETE);
  if (!replaceable.ok() && replaceable.number() != kFileNotFound) return replaceable;

  left_siblings_.RemoveBeside(place.value());
  const std::string sibling =
      std::string(place.value().folder()) + SiblingName(GetCurrentProcessId(), 0);
  const Result<std::string> ansi_sibling = AnsiOf(sibling);
  if (!ansi_sibling.ok()) return ansi_sibling.error();
  Status done = SaveLinkFile(texts.value(), sibling);
  if (done.ok()) done = PutInPlace(ansi_sibling.value(), place.value().ansi);
  if (!done.ok()) DeleteFileA(ansi_sibling.value().c_str());
  return done;
}

}  // namespace zent
