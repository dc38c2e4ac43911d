#include "ui/console/win32/HandleInput.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <string>
#include <utility>

#include "platform/win32/WideText.h"

namespace zent {
namespace {

constexpr DWORD kPollStep = 10;  // milliseconds; a pipe has nothing to wait on
constexpr wchar_t kEndOfFile = 0x1A;
/// No caller waits as long; INFINITE means no limit.
constexpr std::chrono::milliseconds kLongestWait = std::chrono::hours(24);

DWORD WaitTime(std::optional<std::chrono::milliseconds> wait) {
  if (!wait) return INFINITE;
  return static_cast<DWORD>(std::clamp(*wait, std::chrono::milliseconds(0), kLongestWait).count());
}

// The console whose typing is hidden, and its mode before. What ends the program is told to a
// function without an object, in a thread of its own.
std::atomic<HANDLE> hidden_console = nullptr;
std::atomic<DWORD> mode_before = 0;

/// The mode is the console's and would outlive the program: the caller could not see what he types.
BOOL WINAPI ShowTypingAtTheEnd(DWORD /*event*/) {
  const HANDLE console = hidden_console;
  if (console != nullptr) SetConsoleMode(console, mode_before);
  return FALSE;  // and end
}

/// True for a key that puts something into the line.
bool IsTyping(const INPUT_RECORD& event) {
  return event.EventType == KEY_EVENT && event.Event.KeyEvent.bKeyDown != FALSE &&
         event.Event.KeyEvent.uChar.UnicodeChar != 0;
}

}  // namespace

HandleInput::HandleInput(HANDLE handle) : handle_(handle) {
  DWORD mode = 0;
  is_console_ = GetConsoleMode(handle, &mode) != FALSE;
}

ConsoleInput::Reading HandleInput::Next(std::optional<std::chrono::milliseconds> wait) {
  for (;;) {
    if (auto line = lines_.Take()) return {State::Line, *std::move(line)};
    if (!WaitForInput(wait)) return {State::Nothing};
    if (Fill()) continue;
    auto rest = lines_.TakeRest();
    return rest ? Reading{State::Line, *std::move(rest)} : Reading{State::End};
  }
}

/// True when a read has something to say; without a limit the read itself waits.
bool HandleInput::WaitForInput(std::optional<std::chrono::milliseconds> wait) {
  if (!wait) return true;
  if (is_console_) return WaitForKey(WaitTime(wait));
  return GetFileType(handle_) != FILE_TYPE_PIPE || WaitForPipe(WaitTime(wait));
}

bool HandleInput::WaitForPipe(DWORD wait) const {
  const DWORD start = GetTickCount();
  for (;;) {
    DWORD ready = 0;
    // A pipe whose other end is gone fails here; the read tells its end.
    if (PeekNamedPipe(handle_, nullptr, 0, nullptr, &ready, nullptr) == FALSE || ready > 0) {
      return true;
    }
    const DWORD passed = GetTickCount() - start;
    if (passed >= wait) return false;
    Sleep(std::min(kPollStep, wait - passed));
  }
}

/// A console also wakes for the mouse, the focus and keys let go, which are of no line.
bool HandleInput::WaitForKey(DWORD wait) const {
  const DWORD start = GetTickCount();
  for (;;) {
    const DWORD passed = GetTickCount() - start;
    if (WaitForSingleObject(handle_, passed >= wait ? 0 : wait - passed) != WAIT_OBJECT_0) {
      return false;
    }
    INPUT_RECORD event = {};
    DWORD count = 0;
    if (PeekConsoleInputW(handle_, &event, 1, &count) == FALSE) return true;
    if (count > 0 && IsTyping(event)) return true;
    if (count > 0) ReadConsoleInputW(handle_, &event, 1, &count);
  }
}

/// Reads what is there; false at the end of the input, for which an unreadable one counts.
bool HandleInput::Fill() {
  if (is_console_) return FillFromConsole();
  std::array<char, 4096> bytes = {};
  DWORD count = 0;
  if (ReadFile(handle_, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) == FALSE) {
    return false;
  }
  lines_.Append({bytes.data(), count});
  return count > 0;
}

bool HandleInput::FillFromConsole() {
  std::array<wchar_t, 1024> buffer = {};
  DWORD count = 0;
  if (ReadConsoleW(handle_, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) ==
          FALSE ||
      count == 0 || buffer[0] == kEndOfFile) {
    return false;
  }
  std::wstring read(buffer.data(), count);
  if (half_ != 0) read.insert(read.begin(), std::exchange(half_, wchar_t{0}));
  if (IS_HIGH_SURROGATE(read.back())) {
    half_ = read.back();
    read.pop_back();
  }
  lines_.Append(Utf8Of(read));
  return true;
}

void HandleInput::HideTyping() {
  DWORD mode = 0;
  if (!is_console_ || shown_mode_ || GetConsoleMode(handle_, &mode) == FALSE) return;
  shown_mode_ = mode;
  // What was typed before the question was shown, and is not its answer.
  FlushConsoleInputBuffer(handle_);
  mode_before = mode;
  hidden_console = handle_;
  SetConsoleCtrlHandler(ShowTypingAtTheEnd, TRUE);
  SetConsoleMode(handle_, mode & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
}

void HandleInput::ShowTyping() {
  if (!shown_mode_) return;
  SetConsoleMode(handle_, *shown_mode_);
  SetConsoleCtrlHandler(ShowTypingAtTheEnd, FALSE);
  hidden_console = nullptr;
  shown_mode_.reset();
}

Result<std::string> ReadToEnd(HANDLE handle, std::size_t limit) {
  HandleInput console(handle);
  std::string text;
  while (text.size() <= limit) {
    if (console.IsConsole()) {
      const ConsoleInput::Reading reading = console.Next(std::nullopt);
      if (reading.state != ConsoleInput::State::Line) return text;
      text += reading.line + '\n';
      continue;
    }
    std::array<char, 4096> piece = {};
    DWORD count = 0;
    const auto size = static_cast<DWORD>(piece.size());
    if (ReadFile(handle, piece.data(), size, &count, nullptr) == FALSE || count == 0) return text;
    text.append(piece.data(), count);
  }
  return StandardError(kOutOfStringSpace);
}

}  // namespace zent
