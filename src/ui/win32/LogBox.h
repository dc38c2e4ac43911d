#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace zent {

/// The message box `txtMessage`: read-only text, wrapped at its border, of which any part can be
/// selected and copied.
///
/// What is appended waits until Flush puts it into the box; so a burst of messages costs one
/// change. A change touches only what goes and what comes, never the text between.
class LogBox {
 public:
  /// Makes the control a child of `parent`, which owns it and outlives this.
  LogBox(HWND parent, int id);
  ~LogBox();
  LogBox(const LogBox&) = delete;
  LogBox& operator=(const LogBox&) = delete;

  HWND handle() const { return handle_; }

  /// Takes `cut` characters off the start of the text, then adds `text` (UTF-8) at its end. CR and
  /// LF are characters; CR LF, CR and LF each end a line.
  void Append(std::string_view text, std::size_t cut);
  /// Takes `count` characters off the end of the text.
  void TakeBack(std::size_t count);
  /// Puts everything appended into the box, the caret before the last piece of it, the end in view.
  void Flush();
  bool HasPending() const { return cut_ > 0 || !pending_.empty(); }
  /// Moves the box; one that shows its end goes on doing so.
  void Place(const RECT& place);

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam,
                                    LPARAM lparam) noexcept;
  LRESULT Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const;
  bool CountsBytes() const;
  bool ShowsEnd() const;
  void ScrollToEnd();
  void CutShown();
  void CutShownEnd(std::size_t count);
  void Insert(std::string_view text);
  void Select(std::size_t from, std::size_t to) const;

  HWND handle_ = nullptr;
  WNDPROC edit_procedure_ = nullptr;  ///< the control's own
  bool counts_bytes_ = false;         ///< the positions of the control, see ToBoxText
  std::string shown_;                 ///< what is in the box, with its line ends as they came
  std::size_t shown_count_ = 0;       ///< its characters
  std::size_t positions_ = 0;         ///< its length as the control counts
  std::size_t cut_ = 0;               ///< of the characters shown, those to go with the next Flush
  std::string pending_;               ///< appended since the last Flush
  std::size_t last_piece_ = 0;        ///< byte in `pending_` where the last piece begins
};

}  // namespace zent
