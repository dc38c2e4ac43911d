#include "ui/win32/LogBox.h"

#include <algorithm>

#include "base/Text.h"
#include "platform/win32/AnsiText.h"
#include "ui/win32/LogText.h"

namespace zent {
namespace {

constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | ES_LEFT | ES_MULTILINE |
                         ES_READONLY | ES_AUTOVSCROLL | ES_NOHIDESEL;
constexpr WPARAM kControlA = 1;  ///< the character of Ctrl+A

}  // namespace

LogBox::LogBox(HWND parent, int id) {
  handle_ = CreateWindowExA(WS_EX_CLIENTEDGE, "Edit", "", kStyle, 0, 0, 0, 0, parent,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
  Send(EM_LIMITTEXT, 0);  // as much as the control can hold: what it loses, the run takes off
  counts_bytes_ = CountsBytes();
  SetWindowLongPtrA(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  edit_procedure_ = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrA(handle_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
}

LogBox::~LogBox() {
  SetWindowLongPtrA(handle_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(edit_procedure_));
}

LRESULT CALLBACK LogBox::Procedure(HWND window, UINT message, WPARAM wparam,
                                   LPARAM lparam) noexcept {
  const LogBox& self = *reinterpret_cast<LogBox*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  switch (message) {
    case WM_GETDLGCODE:
      // By itself the control would take Tab and Return, and close the window on Escape.
      return DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_CHAR:
      if (wparam != kControlA) break;
      self.Send(EM_SETSEL, 0, -1);
      return 0;
    default:
      break;
  }
  return CallWindowProcA(self.edit_procedure_, window, message, wparam, lparam);
}

LRESULT LogBox::Send(UINT message, WPARAM wparam, LPARAM lparam) const {
  return SendMessageA(handle_, message, wparam, lparam);
}

bool LogBox::CountsBytes() const {
  // A character that takes two bytes where the code page has such, one unit in any case.
  for (const char* probe : {"\u65e5", "\u00e4"}) {
    const std::string ansi = ShownAnsiOf(probe);
    if (ansi.size() < 2) continue;
    SetWindowTextA(handle_, ansi.c_str());
    Send(EM_SETSEL, 0, -1);
    DWORD end = 0;
    Send(EM_GETSEL, 0, reinterpret_cast<LPARAM>(&end));
    SetWindowTextA(handle_, "");
    return end == ansi.size();
  }
  return false;
}

void LogBox::Append(std::string_view text, std::size_t cut) {
  const std::size_t of_shown = std::min(cut, shown_count_ - cut_);
  cut_ += of_shown;
  if (cut > of_shown) pending_.erase(0, SkipCharacters(pending_, cut - of_shown));
  last_piece_ = pending_.size();
  pending_ += text;
}

void LogBox::TakeBack(std::size_t count) {
  const std::size_t waiting = CountCharacters(pending_);
  if (count > waiting) {
    Flush();
    CutShownEnd(std::min(count, shown_count_));
  } else {
    pending_.resize(SkipCharacters(pending_, waiting - count));
    last_piece_ = std::min(last_piece_, pending_.size());
  }
}

void LogBox::Flush() {
  if (!HasPending()) return;
  Send(WM_SETREDRAW, FALSE);
  CutShown();
  const std::string_view added = pending_;
  Insert(added.substr(0, last_piece_));
  const std::size_t before_last_piece = positions_;
  Insert(added.substr(last_piece_));
  pending_.clear();
  last_piece_ = 0;
  Select(before_last_piece, before_last_piece);
  Send(WM_SETREDRAW, TRUE);
  ScrollToEnd();
  InvalidateRect(handle_, nullptr, TRUE);
}

void LogBox::CutShown() {
  if (cut_ == 0) return;
  const std::size_t bytes = SkipCharacters(shown_, cut_);
  std::size_t positions = positions_;
  if (bytes < shown_.size()) {
    std::string_view gone(shown_.data(), bytes);
    // A cut between CR and LF leaves the LF, and with it the line end in the box.
    if (gone.ends_with('\r') && shown_[bytes] == '\n') gone.remove_suffix(1);
    // A LF left by such a cut stands for a line end of its own.
    positions = ToBoxText(gone, false, counts_bytes_).positions;
  }
  Select(0, positions);
  Send(EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(""));
  positions_ -= positions;
  shown_.erase(0, bytes);
  shown_count_ -= cut_;
  cut_ = 0;
}

void LogBox::CutShownEnd(std::size_t count) {
  const std::size_t kept = SkipCharacters(shown_, shown_count_ - count);
  const std::string_view gone = std::string_view(shown_).substr(kept);
  const bool after_cr = kept > 0 && shown_[kept - 1] == '\r';
  const std::size_t positions = ToBoxText(gone, after_cr, counts_bytes_).positions;
  Select(positions_ - positions, positions_);
  Send(EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(""));
  positions_ -= positions;
  shown_.resize(kept);
  shown_count_ -= count;
}

void LogBox::Insert(std::string_view text) {
  if (text.empty()) return;
  const BoxText added = ToBoxText(text, shown_.ends_with('\r'), counts_bytes_);
  Select(positions_, positions_);
  Send(EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(added.ansi.c_str()));
  positions_ += added.positions;
  shown_ += text;
  shown_count_ += CountCharacters(text);
}

void LogBox::Select(std::size_t from, std::size_t to) const {
  Send(EM_SETSEL, from, static_cast<LPARAM>(to));
}

bool LogBox::ShowsEnd() const {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL;
  if (GetScrollInfo(handle_, SB_VERT, &info) == FALSE) return true;
  return info.nPos + static_cast<int>(info.nPage) > info.nMax;
}

void LogBox::ScrollToEnd() {
  DWORD from = 0;
  DWORD to = 0;
  Send(EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
  // The control scrolls to where the caret is, and stays when the caret moves.
  Select(positions_, positions_);
  Send(EM_SCROLLCARET);
  Select(from, to);
}

void LogBox::Place(const RECT& place) {
  const bool at_end = ShowsEnd();
  MoveWindow(handle_, place.left, place.top, place.right - place.left, place.bottom - place.top,
             TRUE);
  if (at_end) ScrollToEnd();
}

}  // namespace zent
