#include "app/jetdb/windows/StandardOutput.h"

#include <algorithm>

#include "platform/win32/WideText.h"

namespace zent {
namespace {

constexpr std::size_t kMostPending = 65536;
constexpr std::size_t kLongestConsoleWrite = 8000;  // characters; a console refuses too many

bool WriteToConsole(HANDLE console, std::string_view utf8) {
  const std::wstring wide = WideOf(utf8);
  for (std::size_t at = 0; at < wide.size();) {
    const std::size_t count = std::min(wide.size() - at, kLongestConsoleWrite);
    DWORD written = 0;
    if (WriteConsoleW(console, wide.data() + at, static_cast<DWORD>(count), &written, nullptr) ==
            FALSE ||
        written == 0) {
      return false;
    }
    at += written;
  }
  return true;
}

bool WriteToFile(HANDLE file, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto size = static_cast<DWORD>(bytes.size());
    if (WriteFile(file, bytes.data(), size, &written, nullptr) == FALSE || written == 0) {
      return false;
    }
    bytes.remove_prefix(written);
  }
  return true;
}

/// How much of `text` can go to a console: not the beginning of a character alone.
std::size_t WholeCharacters(std::string_view text) {
  std::size_t end = text.size();
  for (std::size_t back = 1; back <= std::min<std::size_t>(3, text.size()); ++back) {
    const auto byte = static_cast<unsigned char>(text[text.size() - back]);
    if (byte < 0x80) break;
    if (byte < 0xC0) continue;
    const std::size_t needed = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : 2;
    if (needed > back) end = text.size() - back;
    break;
  }
  return end;
}

}  // namespace

StandardBuffer::StandardBuffer(HANDLE handle) : handle_(handle) {
  DWORD mode = 0;
  is_console_ = GetConsoleMode(handle, &mode) != FALSE;
}

StandardBuffer::int_type StandardBuffer::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  const char written = traits_type::to_char_type(c);
  return xsputn(&written, 1) == 1 ? c : traits_type::eof();
}

std::streamsize StandardBuffer::xsputn(const char* text, std::streamsize size) {
  pending_.append(text, static_cast<std::size_t>(size));
  if (pending_.size() < kMostPending) return size;
  return Write(is_console_ ? WholeCharacters(pending_) : pending_.size()) ? size : 0;
}

int StandardBuffer::sync() { return Write(pending_.size()) ? 0 : -1; }

bool StandardBuffer::Write(std::size_t size) {
  const std::string_view text = std::string_view(pending_).substr(0, size);
  const bool written =
      is_console_ ? WriteToConsole(handle_, text) : text.empty() || WriteToFile(handle_, text);
  pending_.erase(0, size);
  return written;
}

}  // namespace zent
