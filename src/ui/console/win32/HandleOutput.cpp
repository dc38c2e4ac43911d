#include "ui/console/win32/HandleOutput.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/win32/WideText.h"

namespace zent {
namespace {

constexpr std::size_t kLongestConsoleWrite = 8000;  // characters; a console refuses too many

void WriteToConsole(HANDLE console, std::string_view utf8) {
  const std::wstring wide = WideOf(utf8);
  for (std::size_t at = 0; at < wide.size(); at += kLongestConsoleWrite) {
    const std::size_t count = std::min(wide.size() - at, kLongestConsoleWrite);
    DWORD written = 0;
    WriteConsoleW(console, wide.data() + at, static_cast<DWORD>(count), &written, nullptr);
  }
}

void WriteToFile(HANDLE file, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    if (WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) ==
            FALSE ||
        written == 0) {
      return;
    }
    bytes.remove_prefix(written);
  }
}

}  // namespace

HandleBuffer::HandleBuffer(HANDLE handle) : handle_(handle) {
  DWORD mode = 0;
  is_console_ = GetConsoleMode(handle, &mode) != FALSE;
}

HandleBuffer::int_type HandleBuffer::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  const char written = traits_type::to_char_type(c);
  xsputn(&written, 1);
  return c;
}

std::streamsize HandleBuffer::xsputn(const char* text, std::streamsize size) {
  for (const char c : std::string_view(text, static_cast<std::size_t>(size))) {
    if (c == '\n') pending_.push_back('\r');
    pending_.push_back(c);
  }
  return size;
}

int HandleBuffer::sync() {
  if (is_console_) {
    WriteToConsole(handle_, pending_);
  } else if (handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE) {
    WriteToFile(handle_, pending_);
  }
  pending_.clear();
  return 0;
}

}  // namespace zent
