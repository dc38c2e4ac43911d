#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>

#include "base/Status.h"
#include "ui/console/ConsoleInput.h"
#include "ui/console/LineBuffer.h"

namespace zent {

/// The lines of a standard handle of Windows: a console, whose lines come as Unicode, or a pipe or
/// file, whose lines are taken as UTF-8. An invalid handle has ended.
///
/// A console is read by the line: once a key has been pressed, a wait for the line lasts until its
/// end. While the typing is hidden, a program that is ended from the keyboard shows it again first.
class HandleInput : public ConsoleInput {
 public:
  /// Does not own `handle`.
  explicit HandleInput(HANDLE handle);

  /// True for a console: a person types there.
  bool IsConsole() const { return is_console_; }

  Reading Next(std::optional<std::chrono::milliseconds> wait) override;
  void HideTyping() override;
  void ShowTyping() override;

 private:
  bool WaitForInput(std::optional<std::chrono::milliseconds> wait);
  bool WaitForPipe(DWORD wait) const;
  bool WaitForKey(DWORD wait) const;
  bool Fill();
  bool FillFromConsole();

  HANDLE handle_;
  bool is_console_ = false;
  LineBuffer lines_;
  std::optional<DWORD> shown_mode_;  ///< of the console, while the typing is hidden
  wchar_t half_ = 0;                 ///< of a surrogate pair that a read cut apart
};

/// All that `handle` gives up to its end: the lines of a console, each with a "\n", or the bytes of
/// anything else as they are. Error: kOutOfStringSpace for more than `limit` bytes.
Result<std::string> ReadToEnd(HANDLE handle, std::size_t limit);

}  // namespace zent
