#include "platform/win32/AnsiText.h"

#include <windows.h>

#include "base/CodePage.h"
#include "base/ErrorNumbers.h"
#include "base/RuntimeError.h"
#include "platform/win32/WideText.h"

namespace zent {
namespace {

constexpr UINT kWesternCodePage = 1252;

/// Bytes of UTF-16; `lossy` is set when a character has no place in the code page.
std::string Narrow(UINT code_page, const std::wstring& wide, bool& lossy) {
  const int size = static_cast<int>(wide.size());
  BOOL lost = FALSE;
  const int length = WideCharToMultiByte(code_page, WC_NO_BEST_FIT_CHARS, wide.data(), size,
                                         nullptr, 0, nullptr, &lost);
  std::string bytes(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(code_page, WC_NO_BEST_FIT_CHARS, wide.data(), size, bytes.data(), length,
                      nullptr, &lost);
  lossy = lost != FALSE;
  return bytes;
}

/// Bytes of UTF-8 text. The western code page goes through the table that every other part of the
/// program uses, with its five undefined bytes, so that text read and written back is the same.
std::string Encode(std::string_view text, bool& lossy) {
  lossy = false;
  const UINT code_page = GetACP();
  // UTF-8 as the code page of a machine takes neither the flag nor the report of a lost character.
  if (code_page == CP_UTF8) return Utf8Of(WideOf(text));
  if (code_page != kWesternCodePage) return Narrow(code_page, WideOf(text), lossy);
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
  const UINT code_page = GetACP();
  if (code_page == kWesternCodePage) return FromAnsi(ansi);
  const int size = static_cast<int>(ansi.size());
  const int length = MultiByteToWideChar(code_page, 0, ansi.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(code_page, 0, ansi.data(), size, wide.data(), length);
  return Utf8Of(wide);
}

}  // namespace zent
