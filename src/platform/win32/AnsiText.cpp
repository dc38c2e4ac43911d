#include "platform/win32/AnsiText.h"

#include <windows.h>

#include "base/CodePage.h"
#include "base/ErrorNumbers.h"
#include "base/RuntimeError.h"

namespace zent {
namespace {

constexpr UINT kWesternCodePage = 1252;

/// UTF-16 of UTF-8; a broken sequence becomes the replacement character.
std::wstring Wide(UINT code_page, std::string_view bytes) {
  const int size = static_cast<int>(bytes.size());
  const int length = MultiByteToWideChar(code_page, 0, bytes.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(code_page, 0, bytes.data(), size, wide.data(), length);
  return wide;
}

/// Bytes of UTF-16; `lossy` is set when a character has no place in the code page.
std::string Narrow(UINT code_page, const std::wstring& wide, bool& lossy) {
  const int size = static_cast<int>(wide.size());
  // UTF-8 takes neither the flag nor the report of a lost character.
  const bool utf8 = code_page == CP_UTF8;
  const DWORD flags = utf8 ? 0 : WC_NO_BEST_FIT_CHARS;
  BOOL lost = FALSE;
  BOOL* const report = utf8 ? nullptr : &lost;
  const int length =
      WideCharToMultiByte(code_page, flags, wide.data(), size, nullptr, 0, nullptr, report);
  std::string bytes(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(code_page, flags, wide.data(), size, bytes.data(), length, nullptr, report);
  lossy = lost != FALSE;
  return bytes;
}

/// Bytes of UTF-8 text. The western code page goes through the table that every other part of the
/// program uses, with its five undefined bytes, so that text read and written back is the same.
std::string Encode(std::string_view text, bool& lossy) {
  lossy = false;
  if (GetACP() != kWesternCodePage) return Narrow(GetACP(), Wide(CP_UTF8, text), lossy);
  std::string bytes = ToAnsi(text);
  lossy = FromAnsi(bytes) != text;
  return bytes;
}

}  // namespace

Result<std::string> AnsiOf(std::string_view text) {
  bool lossy = false;
  std::string bytes = Encode(text, lossy);
  if (lossy || text.find('\0') != std::string_view::npos) return StandardError(kBadFileName);
  return bytes;
}

std::string ShownAnsiOf(std::string_view text) {
  bool lossy = false;
  return Encode(text, lossy);
}

std::string TextOfAnsi(std::string_view ansi) {
  if (GetACP() == kWesternCodePage) return FromAnsi(ansi);
  bool lossy = false;
  return Narrow(CP_UTF8, Wide(GetACP(), ansi), lossy);
}

}  // namespace zent
